// Text in pictures, for runs without an application of their own.
#pragma once

#include <memory>

class QGuiApplication;

namespace velt {

// While it lives, text can be drawn into pictures; no display is asked for.
class PictureText {
 public:
  PictureText();
  ~PictureText();

 private:
  std::unique_ptr<QGuiApplication> application_;
};

}  // namespace velt

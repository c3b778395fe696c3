// The scale of the window that the user chose, handed to Qt.
#pragma once

#include <QByteArray>

#include "app/options.h"

namespace velt {

// While it lives, an application that is started shows everything at the stored scale, times the
// desktop's own factor. Programs that are started later are to show themselves as ever, so it must
// not outlive the application's construction by much.
class WindowFactor {
 public:
  explicit WindowFactor(const Options& options);
  ~WindowFactor();
  WindowFactor(const WindowFactor&) = delete;
  WindowFactor& operator=(const WindowFactor&) = delete;

 private:
  QByteArray before_;
  bool wasSet_;
};

}  // namespace velt

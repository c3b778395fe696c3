// Opens documents and addresses with the desktop's programs.
#pragma once

#include <string>

namespace velt {

class Launcher {
 public:
  virtual ~Launcher() = default;
  // Opens a file path, a web address or a mail link with its default program. Failures are ignored.
  virtual void OpenDocument(const std::string& target) = 0;
};

}  // namespace velt

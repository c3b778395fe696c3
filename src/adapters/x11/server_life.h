// Whether the X server answers. While it does not, the window stands still and takes no click,
// however well the program's own loop goes on.
#pragma once

#include <memory>

#include "adapters/x11/x_connection.h"

namespace velt {

class ServerLife {
 public:
  explicit ServerLife(XConnection& server) : server_(server) {}

  // Whether there is an answer to what the last call asked; then it is asked again. To be called
  // at most a few times a second. True without a connection: Qt ends the program with its server.
  bool Answers();

 private:
  XConnection& server_;
  bool asked_ = false;
  std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace velt

// What an X server tells about the session: who manages its windows, and whether it is itself a
// guest of a Wayland compositor.
#pragma once

#include <memory>
#include <string>

#include "adapters/x11/x_connection.h"

namespace velt {

class XSession {
 public:
  explicit XSession(XConnection& server);

  // Only asks; each answer changes what is known below and raises `learnt`.
  void Ask();
  Event<> learnt;

  const std::string& WindowManager() const { return windowManager_; }  // empty: none, or not told
  bool InXwayland() const { return inXwayland_; }

 private:
  void AskManager(xcb_atom_t check, xcb_atom_t name);
  void AskName(xcb_window_t manager, xcb_atom_t name);

  XConnection& server_;
  std::string windowManager_;
  bool inXwayland_ = false;
  std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace velt

#include "adapters/x11/server_life.h"

namespace velt {

bool ServerLife::Answers() {
  if (!server_.Works()) return true;
  if (asked_) return false;
  asked_ = true;
  server_.Ask<xcb_get_input_focus_reply_t>(
      ::xcb_get_input_focus(server_.Get()),
      [this, alive = std::weak_ptr(alive_)](const xcb_get_input_focus_reply_t*) {
        if (!alive.expired()) asked_ = false;
      });
  return true;
}

}  // namespace velt

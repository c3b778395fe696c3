#include "rig/engine_wish.h"

#include <utility>

namespace velt {

EngineWish::Change EngineWish::Round(uint32_t window, std::optional<bool> on) {
  if (window == 0 || window != std::exchange(window_, window)) {
    window_ = window;
    // What the files say now may be older than the window.
    unreadable_ = 0;
    return Pause();
  }
  if (!on) return ++unreadable_ >= kMostUnreadable ? Pause() : Change::None;
  unreadable_ = 0;
  if (!*on) {
    sawOff_ = true;
    return End();
  }
  if (!std::exchange(sawOff_, false)) return Change::None;
  wants_ = true;
  return Change::Begins;
}

EngineWish::Change EngineWish::Pause() {
  sawOff_ = false;
  return End();
}

EngineWish::Change EngineWish::End() {
  return std::exchange(wants_, false) ? Change::Ends : Change::None;
}

}  // namespace velt

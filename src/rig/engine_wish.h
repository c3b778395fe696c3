// Decides from what the engine's files and window say, round by round, whether the engine wants the
// transmitter keyed. Pure. What is stale, unreadable or left over from another run never keys:
//
// - It keys when "on" follows an "off" that was read since this window appeared, since reading last
//   paused and since the state could last not be read for kMostUnreadable rounds.
// - It ends with "off", with the window, with a pause, and when the state cannot be read for
//   kMostUnreadable rounds.
#pragma once

#include <cstdint>
#include <optional>

namespace velt {

class EngineWish {
 public:
  static constexpr int kMostUnreadable = 3;

  enum class Change { None, Begins, Ends };

  // `window` of the engine, 0 without one; `on`: what was read of the state, empty when it could
  // not be.
  Change Round(uint32_t window, std::optional<bool> on);

  // No round follows for a while.
  Change Pause();

  bool Wants() const { return wants_; }

 private:
  Change End();

  uint32_t window_ = 0;
  bool sawOff_ = false;  // so that the next "on" is a new one
  bool wants_ = false;
  int unreadable_ = 0;
};

}  // namespace velt

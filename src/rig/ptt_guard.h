// Keys and releases the two rigs' transmitters and sees to it that what was keyed from here is
// released: it drives one PttSafety for each rig and carries its orders out.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "ports/omnirig.h"
#include "ports/scheduler.h"
#include "rig/ptt_safety.h"

namespace velt {

class PttGuard {
 public:
  static constexpr Milliseconds kCheckEvery{250};
  static constexpr int32_t kReleaseNowLimitMs = 500;
  static constexpr const char* kMayStillBeOn = "The transmitter may still be on";

  PttGuard(IOmniRigX& server, Scheduler& scheduler);

  // A short text for the message line.
  std::function<void(const std::string&)> showMessage;
  // A notice that stays in the window, and the end of it.
  std::function<void(const std::string&)> showNotice;
  std::function<void(const std::string&)> endNotice;
  // A transmission ended without a release being asked for here: by the limit, by losing the link
  // or by somebody else. The release, where one is needed, has been sent.
  std::function<void(int32_t rigNumber)> ended;

  // Keys the rig and remembers it. False when the rig refuses; nothing is keyed then. `rigNumber`
  // is 1 or 2, here and below; with another one nothing happens.
  bool Key(int32_t rigNumber);

  // Sends the release. One that was keyed from here is followed up; it reaches the rig first after
  // a reconnect if the link is lost now.
  void Release(int32_t rigNumber);

  // Keyed from here and not yet known to be released.
  bool Holds(int32_t rigNumber) const;

  // Releases what was keyed from here by the shortest way. For the end of the link or the program.
  void ReleaseNow();

  // Looks at the rigs at once; called on their events.
  void Check();

  void SetLimitMinutes(int32_t minutes);  // 1 to 60, others are moved inside
  int32_t LimitMinutes() const { return watches_[0].LimitMinutes(); }

 private:
  static bool Known(int32_t rigNumber) { return rigNumber == 1 || rigNumber == 2; }
  IRigX& Rig(int32_t rigNumber) const;
  PttSafety& Watch(int32_t rigNumber) { return watches_.at(static_cast<size_t>(rigNumber) - 1); }
  void CheckRig(int32_t rigNumber);
  void Tell(PttSafety::Cause cause) const;
  void KeepChecking();

  IOmniRigX& server_;
  Scheduler& scheduler_;
  std::array<PttSafety, 2> watches_;
  Scheduler::Handle tick_;
};

}  // namespace velt

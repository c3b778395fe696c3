// Remembers a transmitter that this program keyed and decides when it has to be released. Pure:
// it is told the time and what the transmitter reports, and answers with orders.
//
// - A transmission ends at the limit, and when the link is lost during it.
// - A release is repeated until receive is reported, for 10 s, as long as commands can be sent,
//   answered or not; then the alarm is raised. After a reconnect the release comes first and the
//   10 s begin anew. A lost link raises the alarm at once: nobody knows what the transmitter does.
// - A key that was not answered may still be under way in the server and take effect after the
//   release. When the link is lost before the transmitter was seen to transmit, one that tells
//   stays watched until no such key is to be expected any more.
// - A transmitter that cannot tell whether it transmits counts as released once the release was
//   accepted.
// - One that reports transmitting without having been keyed from here is never released.
#pragma once

#include <cstdint>
#include <optional>

#include "ports/scheduler.h"
#include "rig/keyer.h"

namespace velt {

class PttSafety {
 public:
  static constexpr int32_t kLeastLimitMinutes = 1;
  static constexpr int32_t kMostLimitMinutes = 60;
  static constexpr int32_t kInitialLimitMinutes = 10;
  static constexpr Milliseconds kRepeatEvery{500};
  static constexpr Milliseconds kRepeatFor{10'000};
  // Receive has to be reported this long before it is believed: a picture from before the last
  // command may still come in.
  static constexpr Milliseconds kReceiveAfterRelease{1000};
  static constexpr Milliseconds kReceiveWhileKeyed{2000};
  static constexpr Milliseconds kKeyComesWithin{10'000};  // of being sent

  enum class Cause { None, Limit, LinkLost, Elsewhere };

  struct Orders {
    bool release = false;       // send the release now
    Cause ended = Cause::None;  // the transmission has just ended, and not by a release from here
    bool raiseAlarm = false;    // "the transmitter may still be on"
    bool linkLost = false;      // and this is why nobody knows
    bool endAlarm = false;
    bool done = false;  // it is not held any more
  };

  // Held inside 1 to 60 minutes; holds for the present transmission too.
  void SetLimitMinutes(int32_t minutes);
  int32_t LimitMinutes() const { return limitMinutes_; }

  // The transmitter has been keyed from here. Keying a keyed one does not lengthen the limit.
  void Keyed(SteadyTime now);

  // A release is being sent; it is followed up if the transmitter was keyed from here.
  void Released(SteadyTime now);

  // It is somebody else's to follow up. True when the alarm was on.
  bool HandOver();

  Orders Tick(SteadyTime now, const Keyer::Report& report);

  // Keyed from here and not yet known to be released.
  bool Holds() const { return stage_ != Stage::Idle; }

 private:
  enum class Stage { Idle, Keyed, Releasing };

  void TickKeyed(SteadyTime now, const Keyer::Report& report, Orders& orders);
  void TickReleasing(SteadyTime now, const Keyer::Report& report, bool linkIsBack, Orders& orders);
  void End(SteadyTime now, Cause cause, Orders& orders);
  void AlarmLinkLost(Orders& orders);
  void Finish(Orders& orders);
  bool ReceivesFor(Milliseconds span, SteadyTime now) const;
  bool KeyMayCome(SteadyTime now) const;

  int32_t limitMinutes_ = kInitialLimitMinutes;
  Stage stage_ = Stage::Idle;
  bool alarm_ = false;
  bool wasLinked_ = false;
  bool sawTransmit_ = false;    // since it was keyed
  bool keyUnanswered_ = false;  // perhaps
  SteadyTime keyedSince_;
  SteadyTime releasingSince_;
  SteadyTime lastSent_;
  std::optional<SteadyTime> receivesSince_;
};

}  // namespace velt

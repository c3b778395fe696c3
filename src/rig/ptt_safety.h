// Remembers a transmitter that this program keyed and decides when it has to be released. Pure:
// it is told the time and what the rig reports, and answers with orders.
//
// - A transmission ends at the limit, and when the link is lost during it.
// - A release is repeated until the rig reports receive, for 10 s; then the alarm is raised. After
//   a reconnect the release comes first and the 10 s begin anew.
// - A rig that reports transmitting without having been keyed from here is never released.
#pragma once

#include <cstdint>
#include <optional>

#include "ports/scheduler.h"

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

  struct Report {
    bool linked = false;        // server and rig answer; else `transmitting` is not looked at
    bool transmitting = false;  // as the rig reports it
  };

  enum class Cause { None, Limit, LinkLost, Elsewhere };

  struct Orders {
    bool release = false;       // send the release now
    Cause ended = Cause::None;  // the transmission has just ended, and not by a release from here
    bool raiseAlarm = false;    // "the transmitter may still be on"
    bool endAlarm = false;
  };

  // Held inside 1 to 60 minutes; holds for the present transmission too.
  void SetLimitMinutes(int32_t minutes);
  int32_t LimitMinutes() const { return limitMinutes_; }

  // The transmitter has been keyed from here. Keying a keyed one does not lengthen the limit.
  void Keyed(SteadyTime now);

  // A release is being sent; it is followed up if the transmitter was keyed from here.
  void Released(SteadyTime now);

  Orders Tick(SteadyTime now, Report report);

  // Keyed from here and not yet known to be released.
  bool Holds() const { return stage_ != Stage::Idle; }

 private:
  enum class Stage { Idle, Keyed, Releasing };

  void TickKeyed(SteadyTime now, Report report, Orders& orders);
  void TickReleasing(SteadyTime now, Report report, bool linkIsBack, Orders& orders);
  void End(SteadyTime now, Cause cause, Orders& orders);
  bool ReceivesFor(Milliseconds span, SteadyTime now) const;

  int32_t limitMinutes_ = kInitialLimitMinutes;
  Stage stage_ = Stage::Idle;
  bool alarm_ = false;
  bool wasLinked_ = false;
  bool sawTransmit_ = false;  // since it was keyed
  SteadyTime keyedSince_;
  SteadyTime releasingSince_;
  SteadyTime lastSent_;
  std::optional<SteadyTime> receivesSince_;
};

}  // namespace velt

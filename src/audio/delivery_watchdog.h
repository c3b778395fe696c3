// Tells when a stream that should deliver has stopped doing so. Nobody else reports a sound server
// that is frozen.
#pragma once

#include "ports/scheduler.h"

namespace velt {

class DeliveryWatchdog {
 public:
  // The first block may take longer: some devices need seconds to start.
  static constexpr Milliseconds kFirstLimit{3000};
  static constexpr Milliseconds kLimit{500};

  void Started(SteadyTime now) {
    last_ = now;
    limit_ = kFirstLimit;
  }
  void Delivered(SteadyTime now) {
    last_ = now;
    limit_ = kLimit;
  }
  // True when nothing was delivered for too long.
  bool Check(SteadyTime now) const { return now - last_ > limit_; }

 private:
  SteadyTime last_{};
  Milliseconds limit_{kFirstLimit};
};

}  // namespace velt

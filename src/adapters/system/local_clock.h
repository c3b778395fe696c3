// The date and time where the user is, and the time since the machine started.
#pragma once

#include "ports/clock.h"

namespace velt {

class LocalClock : public Clock {
 public:
  LocalTime Now() const override;
  SteadyTime Elapsed() const override;
};

}  // namespace velt

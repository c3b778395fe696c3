// The date and time where the user is.
#pragma once

#include "ports/clock.h"

namespace velt {

class LocalClock : public Clock {
 public:
  LocalTime Now() const override;
};

}  // namespace velt

// Local date and time, and a clock that goes on while the machine sleeps.
#pragma once

#include "ports/scheduler.h"

namespace velt {

struct LocalTime {
  int year = 1970;  // four digits
  int month = 1;    // 1 to 12
  int day = 1;      // 1 to 31
  int hour = 0;
  int minute = 0;
  int second = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  virtual LocalTime Now() const = 0;

  // Steady, and counts the time that the machine was suspended, which Scheduler::Now() may not.
  virtual SteadyTime Elapsed() const = 0;
};

}  // namespace velt

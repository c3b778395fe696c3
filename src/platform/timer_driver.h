// Lets a form's timer tick on the scheduler. A changed interval or Enabled restarts the timer; a
// tick that comes late is not made up for; a handler is never entered while it runs.
#pragma once

#include "form/controls.h"
#include "ports/scheduler.h"

namespace velt {

class TimerDriver {
 public:
  TimerDriver(Timer& timer, Scheduler& scheduler);
  TimerDriver(const TimerDriver&) = delete;
  TimerDriver& operator=(const TimerDriver&) = delete;

 private:
  void Restart();
  void Arm();
  void Tick();

  Timer& timer_;
  Scheduler& scheduler_;
  Scheduler::Handle pending_;
  SteadyTime due_{};
  Connections connections_;
};

}  // namespace velt

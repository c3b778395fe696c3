#include "platform/timer_driver.h"

#include <algorithm>

namespace velt {

TimerDriver::TimerDriver(Timer& timer, Scheduler& scheduler)
    : timer_(timer), scheduler_(scheduler) {
  connections_ += timer_.enabled.changed.Listen([this] { Restart(); });
  connections_ += timer_.interval.changed.Listen([this] { Restart(); });
  Restart();
}

void TimerDriver::Restart() {
  pending_.Cancel();
  if (!timer_.enabled || timer_.interval <= 0) return;
  due_ = scheduler_.Now() + Milliseconds(timer_.interval);
  Arm();
}

void TimerDriver::Arm() {
  const auto wait = std::chrono::ceil<Milliseconds>(due_ - scheduler_.Now());
  pending_ = scheduler_.After(std::max(wait, Milliseconds(0)), [this] { Tick(); });
}

void TimerDriver::Tick() {
  // The next tick is counted from this one's due time, so that the period holds on average.
  const Milliseconds interval(timer_.interval);
  due_ += interval;
  if (due_ <= scheduler_.Now()) due_ = scheduler_.Now() + interval;
  Arm();
  timer_.ticked.Raise();
}

}  // namespace velt

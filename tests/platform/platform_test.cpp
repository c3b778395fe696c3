#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "platform/timer_driver.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

TEST(TimerDriver, TicksWhileEnabledRestartsOnAChangeAndDoesNotMakeUpForLateTicks) {
  Form form;
  Timer timer(form, 100);
  VirtualScheduler scheduler;
  const TimerDriver driver(timer, scheduler);
  int ticks = 0;
  std::function<void()> atTick = [] {};
  const Connection ticked = timer.ticked.Listen([&] {
    ++ticks;
    atTick();
  });
  const auto ticksAfter = [&](int ms) {
    scheduler.Advance(Milliseconds(ms));
    return std::exchange(ticks, 0);
  };
  timer.enabled = true;
  EXPECT_EQ(ticksAfter(99), 0);
  timer.interval = 50;  // counts anew from here
  EXPECT_EQ(ticksAfter(49), 0);
  EXPECT_EQ(ticksAfter(1), 1);
  EXPECT_EQ(ticksAfter(500), 10);
  // A handler that takes long: at 50, then late at 225, then by its period again.
  atTick = [&] {
    if (ticks == 1) scheduler.Pass(Milliseconds(175));
  };
  EXPECT_EQ(ticksAfter(300), 3);
  atTick = [&] { timer.enabled = false; };
  EXPECT_EQ(ticksAfter(500), 1);
}

}  // namespace
}  // namespace velt

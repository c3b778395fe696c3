#include <gtest/gtest.h>

#include <functional>

#include "platform/placing.h"
#include "platform/timer_driver.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

TEST(Placing, AWindowIsBroughtBackWhollyOntoTheNearestScreen) {
  const Rectangle screens[] = {{0, 0, 1280, 900}, {1280, 100, 800, 600}};
  for (const auto& [left, top, placed] : {std::tuple{100, 100, Rectangle{100, 100, 559, 196}},
                                          {1262, 100, {1280, 100, 559, 196}},  // 18 pixels show
                                          {700, -40, {700, 0, 559, 196}},
                                          {143165576, 143165576, {1521, 504, 559, 196}}}) {
    EXPECT_TRUE(BroughtOnScreen({left, top, 559, 196}, screens) == placed) << left;
  }
  EXPECT_EQ(BroughtOnScreen({5000, 0, 2000, 50}, {screens, 1}).left, 0);
}

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

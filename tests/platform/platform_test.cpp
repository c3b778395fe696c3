#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "platform/installation.h"
#include "platform/on_top.h"
#include "support/doubles.h"

namespace velt {
namespace {

TEST(Installation, FindsTheEngineAndItsVersion) {
  FakeFiles files;
  files.files["/engine/velt.jar"] = "";
  struct Case {
    const char *versionFile, *text;
  };
  for (const Case& c : {Case{nullptr, "VELT V2.5."}, Case{"", "VELT V2.5."},
                        Case{"  VELT V9.1 \r\nsecond line\n", "VELT V9.1"},
                        Case{"   \nsecond", "VELT V2.5."}, Case{"no line end", "no line end"}}) {
    if (c.versionFile != nullptr) files.files["/engine/zoka.ver"] = c.versionFile;
    Installation installation;
    installation.engineFolder = "/engine";
    installation.DetectEngine(files);
    EXPECT_TRUE(installation.enginePresent);
    EXPECT_EQ(installation.engineVersionText, c.text);
  }
  for (const char* below : {"", "2.9.9", "x"}) EXPECT_TRUE(IsVersionBelow3(below)) << below;
  for (const char* text : {"3.0.0", "9"}) EXPECT_FALSE(IsVersionBelow3(text)) << text;
}

TEST(OnTop, TheLastDialogThatClosesPutsBackWhatWasLoaded) {
  for (const bool loaded : {true, false}) {
    ProgramFixture f;
    OnTop& onTop = f.program->onTop;
    const Property<bool>& topMost = f.Form().Window.topMost;
    OnTop::Lowered first = onTop.Lower();
    onTop.Load(loaded);  // while a dialog is open already
    EXPECT_FALSE(topMost);
    OnTop::Lowered second = onTop.Lower();
    first.reset();
    EXPECT_FALSE(topMost);
    second.reset();
    EXPECT_EQ(topMost, loaded);
    f.program->rig.dialog.Open();
    EXPECT_FALSE(topMost);
    f.program->rig.dialog.Close();
    EXPECT_EQ(topMost, loaded);
  }
}

TEST(TimerDriver, TicksWhileEnabledRestartsOnAChangeAndDoesNotMakeUpForLateTicks) {
  Form form;
  Timer timer(form, 100);
  VirtualScheduler scheduler;
  const TimerDriver driver(timer, scheduler);
  int ticks = 0;
  bool inside = false;
  std::function<void()> atTick = [] {};
  const Connection ticked = timer.ticked.Listen([&] {
    EXPECT_FALSE(inside);
    inside = true;
    ++ticks;
    atTick();
    inside = false;
  });
  const auto ticksAfter = [&](int ms) {
    scheduler.Advance(Milliseconds(ms));
    return std::exchange(ticks, 0);
  };
  EXPECT_EQ(ticksAfter(1000), 0);
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

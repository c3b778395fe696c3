#include <gtest/gtest.h>

#include "platform/installation.h"
#include "platform/on_top.h"
#include "platform/platform_helpers.h"
#include "support/doubles.h"

namespace velt {
namespace {

TEST(PlatformHelpers, NamesTheSystemByItsVersion) {
  for (const auto& [version, description] :
       std::map<std::string, std::string>{{"4.0", "Windows 95"},
                                          {"4.1", "Windows 98"},
                                          {"4.10", "Windows 98"},
                                          {"4.9", "Windows Me"},
                                          {"5.0", "Windows 2000"},
                                          {"5.1", "Windows XP"},
                                          {"5.2", "Other 5.2"},
                                          {"6.0", "Windows Vista"},
                                          {"6.1", "Windows 7"},
                                          {"6.2", "Windows Vista"},
                                          {"10.0", "Other 10.0"}}) {
    EXPECT_EQ(WindowsName(version), description) << version;
  }
}

TEST(PlatformHelpers, StampsOpensAndFindsFiles) {
  ProgramFixture f;
  PlatformHelpers& helpers = f.program->platform;
  EXPECT_EQ(helpers.DateStamp(), "26-03-07");
  f.files.files["/a"] = "x";
  f.files.folders.insert("/b");
  EXPECT_TRUE(helpers.FileExists("/a"));
  EXPECT_FALSE(helpers.FileExists("/b"));
  EXPECT_FALSE(helpers.FileExists(""));
  std::string url;
  helpers.OpenURL(url);
  EXPECT_FALSE(url.empty());
  helpers.SendMailToAuthor({1, 2, 3});
  ASSERT_EQ(f.launcher.opened.size(), 2U);
  EXPECT_EQ(f.launcher.opened[0], url);
  EXPECT_TRUE(f.launcher.opened[1].ends_with("v123")) << f.launcher.opened[1];
}

TEST(Installation, FindsTheEngineAndItsVersion) {
  struct Case {
    std::optional<std::string> versionFile;
    const char* text;
  };
  const Case cases[] = {{std::nullopt, "VELT V2.5."},
                        {"  VELT V9.1 \r\nsecond line\n", "VELT V9.1"},
                        {"", "VELT V2.5."},
                        {"   \nsecond", "VELT V2.5."},
                        {"no line end", "no line end"}};
  for (const Case& c : cases) {
    FakeFiles files;
    files.files["/engine/velt.jar"] = "";
    if (c.versionFile) files.files["/engine/zoka.ver"] = *c.versionFile;
    Installation installation;
    installation.engineFolder = "/engine";
    installation.DetectEngine(files);
    EXPECT_TRUE(installation.enginePresent);
    EXPECT_EQ(installation.engineVersionText, c.text);
  }
  const std::pair<std::string, bool> versions[] = {
      {"", true}, {"2.9.9", true}, {"x", true}, {"3.0.0", false}, {"9", false}};
  for (const auto& [text, below] : versions) {
    EXPECT_EQ(IsVersionBelow3(text), below) << text;
  }
}

TEST(OnTop, TheLastDialogThatClosesPutsBackWhatWasLoaded) {
  for (const bool loaded : {true, false}) {
    ProgramFixture f;
    OnTop& onTop = f.program->onTop;
    const Property<bool>& topMost = f.Form().Window.topMost;
    OnTop::Lowered first = onTop.Lower();
    onTop.Load(loaded);  // while a dialog is open already
    EXPECT_FALSE(topMost);
    first.reset();
    EXPECT_EQ(topMost, loaded);
    first = onTop.Lower();
    OnTop::Lowered second = onTop.Lower();
    first.reset();
    EXPECT_FALSE(topMost);
    second = OnTop::Lowered();
    EXPECT_EQ(topMost, loaded);
    f.program->rig.dialog.Open();
    EXPECT_FALSE(topMost);
    f.program->rig.dialog.Close();
    EXPECT_EQ(topMost, loaded);
  }
}

struct TimerFixture {
  Form form;
  Timer timer{form, 100};
  VirtualScheduler scheduler;
  TimerDriver driver{timer, scheduler};
  int ticks = 0;
  Connection ticked;
  TimerFixture() {
    ticked = timer.ticked.Listen([this] { ++ticks; });
  }
};

TEST(TimerDriver, TicksWhileEnabledAndRestartsOnAChange) {
  TimerFixture f;
  f.scheduler.Advance(Milliseconds(1000));
  EXPECT_EQ(f.ticks, 0);
  f.timer.enabled = true;
  f.scheduler.Advance(Milliseconds(99));
  EXPECT_EQ(f.ticks, 0);
  f.timer.interval = 50;  // counts anew from here
  f.scheduler.Advance(Milliseconds(49));
  EXPECT_EQ(f.ticks, 0);
  f.scheduler.Advance(Milliseconds(1));
  EXPECT_EQ(f.ticks, 1);
  f.scheduler.Advance(Milliseconds(500));
  EXPECT_EQ(f.ticks, 11);
  f.ticked = f.timer.ticked.Listen([&f] {
    ++f.ticks;
    f.timer.enabled = false;
  });
  f.scheduler.Advance(Milliseconds(500));
  EXPECT_EQ(f.ticks, 12);
}

TEST(TimerDriver, DoesNotMakeUpForLateTicksNorReenter) {
  TimerFixture f;
  f.timer.enabled = true;
  bool inside = false;
  f.ticked = f.timer.ticked.Listen([&] {
    EXPECT_FALSE(inside);
    inside = true;
    ++f.ticks;
    if (f.ticks == 1) f.scheduler.Pass(Milliseconds(350));  // a handler that takes long
    inside = false;
  });
  f.scheduler.Advance(Milliseconds(550));
  // At 100, then late at 450, then by its period again.
  EXPECT_EQ(f.ticks, 3);
}

}  // namespace
}  // namespace velt

// The engine's window, process and commands, in the whole program over doubles.
#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

constexpr const char* kTitle = "VELT V9.9";

struct EngineTest : testing::Test, ProgramFixture {
  EngineTest() {
    files.files["/opt/engine/velt.jar"] = "";
    files.files["/opt/engine/zoka.ver"] = "VELT V9.9\n";
    store.Save("VELT-SA", "Version", "3.0.0");
    store.Save("VELT-SA", "AutoRunZOKA", "False");
    Reachable(true);
  }
  // The program is there, started, with a linked rig.
  Main& Begin() {
    Restart();
    Start();
    StartCapture();
    writes1.Take();
    return Form();
  }
  std::string Typed(Milliseconds span = Milliseconds(10)) {
    scheduler.Advance(span);
    return engineWindow.Take();
  }
  std::string Rigs() {
    scheduler.RunPosted();
    std::string all;
    for (const std::string& write : writes1.Take()) all += (all.empty() ? "" : ", ") + write;
    return all;
  }
};

std::string Twice(const std::string& keys) {
  return "up 1, up 1, " + keys + ", " + keys;
}
std::string Mode(int32_t mode) {
  return "Mode " + std::to_string(mode);
}

TEST_F(EngineTest, CommandsGoToTheEngineWhileItIsThereAndElseToTheRig) {
  Main& form = Begin();
  ListBox& box = form.cmbPresetMode;
  const auto choose = [&](const char* mode) {
    box.items = std::vector<std::string>{mode};
    box.listIndex = -1;
    box.UserPick(0);
    return std::string(form.Label3.caption);
  };
  struct Case {
    const char* what;
    std::function<void()> action;
    std::string engine;  // keys
    bool besides;        // the rig is told, too
    std::string rig;
  };
  const std::vector<Case> cases{
      {"LSB in the menu", [&] { form.mnuModModes[1].Click(); }, "(^l)", true, Mode(PM_SSB_L)},
      {"USB in the menu", [&] { form.mnuModModes[2].Click(); }, "(^u)", true, Mode(PM_SSB_U)},
      {"CW in the menu", [&] { form.mnuModModes[3].Click(); }, "(^w)", true, Mode(PM_CW_U)},
      {"TX in the menu", [&] { form.mnuPTT_ON.Click(); }, "(^t)", false, "TX"},
      {"RX in the menu", [&] { form.mnuPTT_OFF.Click(); }, "(^r)", true, "RX"},
      {"TX button", [&] { form.optTXRX[0].UserPress(1); }, "(^t)", false, "TX"},
      {"RX button", [&] { form.optTXRX[1].UserPress(1); }, "(^r)", true, "RX"},
      {"LSB", [&] { choose("LSB"); }, "(^l)", false, Mode(PM_SSB_L)},
      {"USB", [&] { choose("USB"); }, "(^u)", false, Mode(PM_SSB_U)},
      {"CW", [&] { choose("CW"); }, "(^w)", false, Mode(PM_CW_U)},
      {"CW-u", [&] { choose("CW-u"); }, "", false, Mode(PM_CW_U)},
      {"CW-l", [&] { choose("CW-l"); }, "", false, Mode(PM_CW_L)},
      {"AM", [&] { choose("AM"); }, "", false, Mode(PM_AM)},
      {"FM", [&] { choose("FM"); }, "", false, Mode(PM_FM)},
      {"DRM", [&] { choose("DRM"); }, "(^d)", false, ""},
      {"ASCII", [&] { choose("ASCII"); }, "(^i)", false, ""},
      {"DIG", [&] { choose("DIG"); }, "(^i)", false, Mode(PM_DIG_U)},
      {"usb", [&] { choose("usb"); }, "", false, ""}};
  for (const bool engine : {true, false}) {
    engine ? engineWindow.Open(kTitle) : engineWindow.Vanish();
    EXPECT_EQ(form.Label3.caption.Get(), engine ? "Velt Mode" : "Rig Mode");
    for (const Case& c : cases) {
      form.Label3.caption = std::string();
      c.action();
      const std::string keys = c.engine.empty() ? "up 1, up 1" : Twice(c.engine);
      EXPECT_EQ(Typed(), engine ? keys : "") << c.what;
      EXPECT_EQ(Rigs(), !engine || c.besides ? c.rig : "") << c.what << engine;
      EXPECT_NE(form.Label3.caption.Get(), engine ? "Rig Mode" : "Velt Mode");
    }
  }
  EXPECT_EQ(choose("DRM"), "Rig Mode");
  box.UserDoubleClick();
  prompts.input("RTTY");
  prompts.input("");
  prompts.input(std::nullopt);
  EXPECT_EQ(box.items.Get(), (std::vector<std::string>{"DRM", "RTTY"}));
}

TEST_F(EngineTest, TheOperatorsReceiveReleasesWhateverTheEngineDoes) {
  Main& form = Begin();
  engineWindow.Open(kTitle);
  program->rig.ptt.PTT_ON(TransmitOwner::Engine);
  EXPECT_TRUE(rig1.Transmits());
  engineWindow.obeys = false;
  form.optTXRX[1].UserPress(1);
  scheduler.RunPosted();
  EXPECT_FALSE(rig1.Transmits());
  EXPECT_NE(form.lblMessage.caption.Get().find("The engine was not told"), std::string::npos);
}

TEST_F(EngineTest, ScriptsDoNotMixAndOldOnesAreNotTyped) {
  Begin();
  engineWindow.Open(kTitle);
  KeyRunner& keys = program->engineKeys;
  keys.Run(StartScript());
  keys.Run(CommandScript("(^u)"));
  EXPECT_EQ(Typed(Milliseconds(599)), "up 1");
  EXPECT_EQ(Typed(Milliseconds(2)), "up 1, (^s)");
  EXPECT_EQ(Typed(Milliseconds(600)), "(^s), " + Twice("(^u)"));

  keys.Run({PauseStep{Milliseconds(100)}});
  keys.Run(CommandScript("(^t)"));
  keys.RunInsteadOfWaiting(CommandScript("(^r)"));
  EXPECT_EQ(Typed(Milliseconds(200)), Twice("(^r)")) << "receive stands behind nothing";

  keys.Run({PauseStep{Milliseconds(3100)}});
  keys.Run(CommandScript("(^t)"));
  EXPECT_EQ(Typed(Milliseconds(5000)), "");

  // Keys that another window would have got are typed again, but not for ever.
  engineWindow.intrusions = 2;
  keys.Run(CommandScript("(^u)"));
  EXPECT_EQ(Typed(), "up 1, up 1, up 1, up 1, (^u), (^u)");
  engineWindow.intrusions = 99;
  keys.Run(CommandScript("(^u)"));
  EXPECT_EQ(Typed(), "up 1, up 1, up 1, up 1, up 1");
  engineWindow.intrusions = 0;

  // A script ends where its window fails it; the next one has its turn.
  engineWindow.obeys = false;
  keys.Run(CommandScript("(^u)"));
  keys.Run(CommandScript("(^l)"));
  EXPECT_EQ(Typed(), "up 1, up 1");
  engineWindow.Vanish();
  keys.Run(CommandScript("(^u)"));
  EXPECT_EQ(Typed(), "");
  EXPECT_FALSE(keys.Busy());
}

TEST_F(EngineTest, ItIsStartedOnceWaitedForAndMadeToReceive) {
  store.Save("VELT-SA", "cmdZOKAstart", "True");
  Main& form = Begin();
  form.mnurunzoka.Click();
  form.mnurunzoka.Click();
  EXPECT_EQ(launcher.started, std::vector<std::string>{"/opt/engine/velt.jar java -jar"});
  launcher.answer(Launcher::Start::Started);
  EXPECT_TRUE(program->messageForm.Window.visible);
  scheduler.Advance(Milliseconds(2000));
  EXPECT_TRUE(form.Timer3.enabled);
  EXPECT_EQ(form.Label3.caption.Get(), "Rig Mode");
  engineWindow.Open(kTitle);
  EXPECT_EQ(Typed(Milliseconds(2500)), "up 1, up 1, (^s), (^s)");
  EXPECT_FALSE(form.Timer3.enabled || program->messageForm.Window.visible);
  EXPECT_EQ(form.Label3.caption.Get(), "Velt Mode");

  form.mnurunzoka.Click();
  EXPECT_EQ(Typed(), "up 1") << "it is there: brought to the front";
  EXPECT_EQ(launcher.started.size(), 1U);

  form.mnuclosezoka.Click();
  EXPECT_EQ(Typed(), "close 1");
  engineWindow.Vanish();
  EXPECT_EQ(form.Label3.caption.Get(), "Rig Mode");
  EXPECT_EQ(form.lblMode.caption.Get(), "N/A");
  form.mnuclosezoka.Click();
  ASSERT_EQ(prompts.told.size(), 1U);
  EXPECT_EQ(prompts.told[0].title + ": " + prompts.told[0].text,
            "Closing VELT: Could not find the VELT-Engine.\r\nRun VELT first.");
  Close();
  EXPECT_EQ(prompts.told.size(), 1U) << "no news while ending";
}

TEST_F(EngineTest, AStartThatLeadsToNothingIsGivenUp) {
  Main& form = Begin();
  form.mnurunzoka.Click();
  launcher.answer(Launcher::Start::NoProgram);
  EXPECT_FALSE(form.Timer3.enabled || program->messageForm.Window.visible);
  ASSERT_EQ(prompts.told.size(), 1U);
  EXPECT_NE(prompts.told[0].text.find("needs Java"), std::string::npos);

  form.mnurunzoka.Click();
  launcher.answer(Launcher::Start::Started);
  scheduler.Advance(Milliseconds(59'900));
  EXPECT_TRUE(form.Timer3.enabled);
  EXPECT_FALSE(program->messageForm.Window.visible) << "only for 11 s";
  scheduler.Advance(Milliseconds(1'000));
  EXPECT_FALSE(form.Timer3.enabled);
  EXPECT_EQ(form.lblMessage.caption.Get(), "The engine did not appear: no window \"VELT V9.9\"");
  engineWindow.Open(kTitle);
  EXPECT_EQ(Typed(Milliseconds(2000)), "") << "nothing is typed long after a start";
}

TEST_F(EngineTest, AtTheStartOfTheProgram) {
  store.Save("VELT-SA", "AutoRunZOKA", "True");
  setup.installation.engineTitle = "Another";
  engineWindow.Open("Another");
  Main& form = Begin();
  EXPECT_TRUE(launcher.started.empty()) << "it runs already, under the title that was named";
  EXPECT_EQ(Typed(), "up 1");
  EXPECT_EQ(form.Label3.caption.Get(), "Velt Mode");
  EXPECT_FALSE(form.lblNotice.visible);

  engineWindow.windows.clear();
  engineWindow.unavailable = "needs X11";
  Main& again = Begin();
  EXPECT_EQ(launcher.started.size(), 1U);
  EXPECT_FALSE(again.Timer3.enabled || program->messageForm.Window.visible);
  EXPECT_EQ(again.lblNotice.caption.Get(), "needs X11");

  // One that is not installed is not there, whatever windows are.
  files.files.erase("/opt/engine/velt.jar");
  engineWindow.Open("Another");
  Main& without = Begin();
  EXPECT_FALSE(without.lblNotice.visible);
  without.mnuPTT_ON.Click();
  EXPECT_EQ(Typed(), "");
  EXPECT_EQ(Rigs(), "TX");
}

TEST(MessageWindowTest, ItSlidesWrapsAndClosesByItself) {
  MessageForm form;
  MessageWindow window(form);
  window.Show();
  EXPECT_TRUE(form.Window.visible && form.Timer1.enabled);
  for (int tick = 1; tick <= 110; ++tick) window.Timer1_Timer();
  EXPECT_EQ(form.lblani.leftTwips, 110 * 10 % 270);
  EXPECT_TRUE(window.Shown());
  window.Timer1_Timer();
  EXPECT_FALSE(form.Window.visible || form.Timer1.enabled);
  // Closed early, the next showing has the ticks that were left.
  window.Show();
  for (int tick = 1; tick <= 100; ++tick) window.Timer1_Timer();
  form.Window.closeAsked.Raise();
  EXPECT_FALSE(window.Shown());
  window.Show();
  for (int tick = 1; tick <= 11; ++tick) window.Timer1_Timer();
  EXPECT_FALSE(window.Shown());
}

}  // namespace
}  // namespace velt

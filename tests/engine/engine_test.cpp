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
};

std::string Twice(const std::string& keys) {
  return "up, up, " + keys + ", " + keys;
}

TEST_F(EngineTest, CommandsGoToTheEngineWhileItIsThereAndElseToTheRig) {
  Main& form = Begin();
  ListBox& box = form.cmbPresetMode;
  const auto choose = [&](const char* mode) {
    box.items = std::vector<std::string>{mode};
    box.listIndex = -1;
    box.UserPick(0);
  };
  const auto mode = [](int32_t number) { return "Mode " + std::to_string(number); };
  // What is done, the keys for the engine, whether the rig is told besides, and what.
  using Case = std::tuple<const char*, std::function<void()>, std::string, bool, std::string>;
  const std::vector<Case> cases{
      {"LSB in the menu", [&] { form.mnuModModes[1].Click(); }, "(^l)", true, mode(PM_SSB_L)},
      {"USB in the menu", [&] { form.mnuModModes[2].Click(); }, "(^u)", true, mode(PM_SSB_U)},
      {"CW in the menu", [&] { form.mnuModModes[3].Click(); }, "(^w)", true, mode(PM_CW_U)},
      {"TX in the menu", [&] { form.mnuPTT_ON.Click(); }, "(^t)", false, "TX"},
      {"RX in the menu", [&] { form.mnuPTT_OFF.Click(); }, "(^r)", true, "RX"},
      {"TX button", [&] { form.optTXRX[0].UserPress(1); }, "(^t)", false, "TX"},
      {"RX button", [&] { form.optTXRX[1].UserPress(1); }, "(^r)", true, "RX"},
      {"LSB", [&] { choose("LSB"); }, "(^l)", false, mode(PM_SSB_L)},
      {"CW", [&] { choose("CW"); }, "(^w)", false, mode(PM_CW_U)},
      {"CW-l", [&] { choose("CW-l"); }, "", false, mode(PM_CW_L)},
      {"DRM", [&] { choose("DRM"); }, "(^d)", false, ""},
      {"DIG", [&] { choose("DIG"); }, "(^i)", false, mode(PM_DIG_U)}};
  for (const bool engine : {true, false}) {
    engineWindow.Open(engine ? kTitle : "");
    for (const auto& [what, action, keys, besides, told] : cases) {
      action();
      EXPECT_EQ(Typed(), !engine ? "" : keys.empty() ? "up, up" : Twice(keys)) << what;
      const std::string rig = !engine || besides ? told : "";
      EXPECT_EQ(writes1.Take(), std::vector<std::string>(rig.empty() ? 0 : 1, rig)) << what;
      EXPECT_EQ(form.Label3.caption.Get(), engine ? "Velt Mode" : "Rig Mode");
    }
  }
  box.UserDoubleClick();
  prompts.input("RTTY");
  EXPECT_EQ(box.items.Get(), (std::vector<std::string>{"DIG", "RTTY"}));

  // The operator's receive releases whatever the engine does.
  engineWindow.Open(kTitle);
  program->rig.ptt.PTT_ON(TransmitOwner::Engine);
  EXPECT_TRUE(rig1.Transmits());
  engineWindow.obeys = false;
  form.optTXRX[1].UserPress(1);
  scheduler.RunPosted();
  EXPECT_FALSE(rig1.Transmits());
}

TEST_F(EngineTest, ScriptsDoNotMixAndOldOnesAreNotTyped) {
  Begin();
  engineWindow.Open(kTitle);
  KeyRunner& keys = program->engineKeys;
  keys.Run(StartScript());
  keys.Run(CommandScript("(^u)"));
  EXPECT_EQ(Typed(Milliseconds(599)), "up");
  EXPECT_EQ(Typed(Milliseconds(2)), "up, (^s)");
  EXPECT_EQ(Typed(Milliseconds(600)), "(^s), " + Twice("(^u)"));

  for (const KeyStep& step :
       KeyScript{ActivateStep{}, PauseStep{Milliseconds(100)}, ChordStep{"(^t)"}}) {
    engineWindow.intrusions = std::holds_alternative<ChordStep>(step) ? 1 : 0;
    keys.Run({step, ChordStep{"(^t)"}});
    Form().mnuPTT_ON.Click();
    engineWindow.Take();
    Form().mnuPTT_OFF.Click();
    EXPECT_EQ(Typed(), Twice("(^r)")) << "receive stands behind nothing";
  }
  keys.Run({PauseStep{Milliseconds(3100)}});
  keys.Run(CommandScript("(^t)"));
  EXPECT_EQ(Typed(Milliseconds(5000)), "");

  // Keys that another window would have got are typed again, but not for ever.
  for (const int intrusions : {2, 99}) {
    engineWindow.intrusions = intrusions;
    keys.Run(CommandScript("(^u)"));
    EXPECT_EQ(Typed(), intrusions == 2 ? "up, up, up, up, (^u), (^u)" : "up, up, up, up, up");
  }
  // A script ends where its window fails it; the next one has its turn.
  engineWindow.obeys = false;
  keys.Run(CommandScript("(^u)"));
  keys.Run(CommandScript("(^l)"));
  EXPECT_EQ(Typed(), "up, up");
}

TEST_F(EngineTest, ItIsStartedOnceWaitedForAndMadeToReceive) {
  store.Save("VELT-SA", "cmdZOKAstart", "True");
  Main& form = Begin();
  form.mnurunzoka.Click();
  launcher.answer(Launcher::Start::NoProgram);
  EXPECT_FALSE(form.Timer3.enabled || program->messageForm.Window.visible);
  EXPECT_EQ(prompts.told.size(), 1U);

  form.mnurunzoka.Click();
  launcher.answer(Launcher::Start::Started);
  scheduler.Advance(Milliseconds(59'900));
  EXPECT_TRUE(form.Timer3.enabled);
  EXPECT_FALSE(program->messageForm.Window.visible) << "only for 11 s";
  scheduler.Advance(Milliseconds(1'000));
  EXPECT_TRUE(form.lblNotice.caption.Get().starts_with("The engine did not appear: no window"));
  engineWindow.Open(kTitle);
  EXPECT_FALSE(form.lblNotice.visible);
  EXPECT_EQ(Typed(Milliseconds(2000)), "") << "nothing is typed long after a start";
  engineWindow.Vanish();

  form.mnurunzoka.Click();
  form.mnurunzoka.Click();
  EXPECT_EQ(launcher.started.size(), 3U);
  EXPECT_EQ(launcher.started[2], "/opt/engine/velt.jar java -jar");
  engineWindow.Open(kTitle);
  EXPECT_EQ(Typed(Milliseconds(2500)), "up, up, (^s), (^s)");
  EXPECT_FALSE(form.Timer3.enabled || program->messageForm.Window.visible);
  form.mnurunzoka.Click();
  EXPECT_EQ(Typed(), "up") << "it is there: brought to the front";
  form.mnuclosezoka.Click();
  EXPECT_EQ(Typed(), "close");
  engineWindow.title.clear();
  scheduler.Advance(Milliseconds(601));
  EXPECT_EQ(form.lblMode.caption.Get(), "N/A");
  form.mnuclosezoka.Click();
  Close();
  EXPECT_EQ(prompts.told.size(), 2U) << "no news while ending";
}

TEST_F(EngineTest, AtTheStartOfTheProgram) {
  store.Save("VELT-SA", "AutoRunZOKA", "True");
  setup.installation.engineTitle = "Another";
  engineWindow.Open("Another");
  EXPECT_EQ(Begin().Label3.caption.Get(), "Velt Mode");
  EXPECT_TRUE(launcher.started.empty()) << "it runs already, under the title that was named";

  engineWindow.title.clear();
  engineWindow.unavailable = "needs X11";
  EXPECT_EQ(Begin().lblNotice.caption.Get(), "needs X11");
  EXPECT_FALSE(Form().Timer3.enabled || program->messageForm.Window.visible);
  EXPECT_EQ(launcher.started.size(), 1U);

  // One that is not installed is not there, whatever windows are.
  files.files.erase("/opt/engine/velt.jar");
  setup.installation.engineFolderNamed = true;
  engineWindow.Open("Another");
  engineWindow.Take();
  Begin().mnuPTT_ON.Click();
  EXPECT_EQ(Form().lblNotice.caption.Get(), "No velt.jar in /opt/engine.");
  EXPECT_EQ(Typed(), "");
  EXPECT_TRUE(rig1.Transmits());
}

}  // namespace
}  // namespace velt

#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

TEST(Startup, DoesWhatTheCallAsksForButNothingAfterAResetOrBesideAnotherRun) {
  ProgramFixture f;
  f.store.Save("VELT-SA", "Slider", "33");
  f.store.Save("CAT", "Rig1", "x");
  f.setup.resetSettings = true;
  f.Restart();
  EXPECT_EQ(f.Start(), Startup::Result::SettingsReset);
  EXPECT_FALSE(f.store.Get("VELT-SA", "Slider") || f.store.Get("CAT", "Rig1"));
  f.setup.resetSettings = false;
  f.lock.alone = false;
  f.Restart();
  EXPECT_EQ(f.Start(), Startup::Result::AnotherInstance);
  EXPECT_TRUE(f.files.folders.empty());
  f.setup.exemptFromSingleInstance = f.setup.startAnalyser = true;
  f.setup.dataFolder = "/data";
  f.Restart();
  EXPECT_EQ(f.Start(), Startup::Result::Running);
  EXPECT_TRUE(f.files.folders.contains("/data/WAV") && f.audio.opened.size() == 1U);
}

// What happens while the program starts and ends, in its order, as those see it who stand around.
struct Sequence : ProgramFixture {
  std::string order;
  bool rigShown = false;
  Connections watching;

  // `engine`: one is installed.
  Sequence(bool engine, bool rigsAreThere) {
    if (engine) files.files["/opt/engine/velt.jar"] = "";
    files.files["/opt/engine/zoka.ver"] = " VELT V9.9 \n";
    store.Save("VELT-SA", "Version", "3.0.0");
    Reachable(rigsAreThere);
    Program& p = *program;
    const auto note = [this](const char* what) { return [this, what] { order += what; }; };
    watching += p.form.mnurunzoka.clicked.Listen([this] {
      order += files.folders.contains("/home/om/VELT/WAV") ? "engine " : "engine-early ";
    });
    watching += p.form.mnuclosezoka.clicked.Listen(note("close-engine "));
    watching += p.form.picExpand.visible.changed.Listen(note("panel "));
    watching += p.form.Timer1.enabled.changed.Listen(
        [this] { order += Form().Timer1.enabled ? "capture " : "stop-capture "; });
    // The timer's own ticks come later.
    watching += p.form.tmrStatus.ticked.Listen([this] { order += rigShown ? "status " : ""; });
    watching += p.startup.rigOffLine.Listen(note("off-line "));
    watching += p.shutdown.lastFrequency.Listen(
        [this](int32_t hz) { order += "last-" + std::to_string(hz) + " "; });
    watching +=
        p.shutdown.rigOff.Listen([this] { order += Form().lblTRXMode.caption.Get() + " "; });
    watching += p.rig.display.statusShown.Listen([this] {
      if (!std::exchange(rigShown, true)) order += "rig ";
    });
    store.commit = [this] {
      order += rig1.Link().state == RigLink::State::Off ? "save-late " : "save ";
      return 0;
    };
  }
  // Shown shifted by so much and keyed; what happened so far is forgotten.
  void Key(int16_t offsetKHz = 0) {
    program->rig.state.offsetKHz = offsetKHz;
    program->rig.display.ShowRigParams();
    Form().mnuPTT_ON.Click();
    scheduler.Advance(Milliseconds(300));
    order.clear();
    writes1.Take();
  }
};

TEST(Startup, GoesThroughItsStepsInOrder) {
  Sequence f(true, true);
  f.store.Save("VELT-SA", "AutoStartSA", "True");
  f.store.Save("VELT-SA", "Expander", "1");
  f.files.unmakable = {"/home/om/VELT/"};  // which keeps no other from being made
  f.Start();
  EXPECT_EQ(f.order, "panel engine capture rig status ");
  EXPECT_NE(f.log.lines.at(0).find("/home/om/VELT/ could not be made"), std::string::npos);
  Main& form = f.Form();
  EXPECT_EQ(form.Window.caption.Get(), "VELT-SA - Engine VELT V9.9 - Rig Simulated rig");
  EXPECT_TRUE(form.tmrCheckZOKA.enabled && form.imgRecOnOff[0].enabled);
  EXPECT_EQ(form.chkExpand.value, 1);
  EXPECT_EQ(form.imgStartStop.tag.Get(), "Stop");
  // A later restart of the link undoes no choice of the user's.
  form.chkExpand.UserPick(false);
  for (int press = 0; press < 2; ++press) f.program->catForm.cmdStartStop.Click();
  f.scheduler.RunPosted();
  EXPECT_EQ(form.chkExpand.value, 0);
}

TEST(Startup, WithoutAnEngineItsItemsAreOffAndWithoutARigItIsAskedOnce) {
  Sequence f(false, false);
  f.store.Save("VELT-SA", "AutoRunZOKA", "True");
  f.Start();
  Main& form = f.Form();
  EXPECT_EQ(form.Window.caption.Get(), "VELT-SA");
  const Control* const off[] = {&form.mnuautos[0],  &form.mnuautos[1], &form.mnurunzoka,
                                &form.mnuclosezoka, &form.lblMode,     &form.tmrCheckZOKA};
  for (const Control* item : off) EXPECT_FALSE(item->enabled);
  EXPECT_EQ(f.order, "panel off-line ");
  ASSERT_EQ(f.prompts.asked.size(), 1U);
  EXPECT_EQ(f.prompts.asked[0].title, "OmniRig not Configured for CAT");
  f.prompts.answer(true);
  EXPECT_TRUE(f.program->catForm.Window.visible);
  // What a first run without a rig never applied is not lost.
  f.Close();
  EXPECT_EQ(f.Stored("Expander") + f.Stored("OnTop"), "11");
  f.Restart();
  f.Start();
  f.Form().chkExpand.UserPick(false);
  f.Form().mnusettings[0].Click();
  f.Close();
  EXPECT_EQ(f.Stored("Expander") + f.Stored("OnTop"), "00");
}

// A rig can be missing in two ways, and be switched on or reached later.
TEST(Startup, ARigThatIsOffLineIsToldAndFollowedWhenItComes) {
  for (const bool serverUp : {false, true}) {
    Sequence f(false, serverUp);
    f.store.Save("VELT-SA", "Version", "");
    f.rig1.Tune(0);
    f.Start();
    EXPECT_EQ(f.Form().lblFrequency.caption.Get(), "RigOffLine");
    EXPECT_EQ(std::exchange(f.order, ""), serverUp ? "rig status panel off-line " : "off-line ");
    f.rig1.Tune(14074000);
    f.rig1.ComeBack();
    f.scheduler.RunPosted();
    EXPECT_EQ(f.Form().lblFrequency.caption.Get(), "14.074.00");
    EXPECT_EQ(f.order, serverUp ? "" : "rig status panel ");
  }
}

TEST(Startup, AddressesAndLimitAreKeptInTheirOwnSection) {
  ProgramFixture f;
  const auto saved = [&f](const char* key) {
    f.program->settings.SaveRegistryStuff();
    return f.store.Get("CAT", key);
  };
  f.store.Save("CAT", "Rig2", "10.0.0.7:4600");
  f.store.Save("CAT", "TransmissionLimitMinutes", "99");
  f.Start();
  EXPECT_EQ(f.server.Address(2), "10.0.0.7:4600");
  EXPECT_EQ(f.program->rig.guard.LimitMinutes(), 60);
  EXPECT_EQ(saved("Rig1"), std::nullopt);  // never set up
  f.program->rig.dialog.Open();
  f.program->catForm.txtAddress1.UserText("localhost:4540");
  f.program->catForm.cmdApplyAddresses.Click();
  EXPECT_EQ(saved("Rig1"), "localhost:4540");
  // An address for one run only is used, and not kept.
  f.setup.rigAddresses[1] = "shack:4601";
  f.Restart();
  f.Start();
  EXPECT_EQ(f.server.Address(2), "shack:4601");
  f.program->settings.KeepRigAddresses();
  EXPECT_EQ(saved("Rig2"), "10.0.0.7:4600");
  // Applied after another one was it is the user's own.
  f.program->rig.dialog.Open();
  for (const char* address : {"shak:4601", "shack:4601"}) {
    f.program->catForm.txtAddress2.UserText(address);
    f.program->catForm.cmdApplyAddresses.Click();
    EXPECT_EQ(saved("Rig2"), address);
  }
}

TEST(Shutdown, GoesThroughItsStepsInOrder) {
  for (const auto& [rigUp, capturing, order] :
       {std::tuple{true, false, "save close-engine last-14074000 "},
        {false, false, "save close-engine OFF "},
        {true, true, "release save close-engine last-14074000 stop-capture "}}) {
    Sequence f(true, rigUp);
    f.watching += f.rig1.written.Listen(
        [&f](const std::string& what) { f.order += what == "RX" ? "release " : ""; });
    f.rig1.AnswerAfter(Milliseconds(0));
    f.Start();
    if (capturing) f.StartCapture();
    if (capturing) f.Key();
    f.program->rig.dialog.Open();
    f.Form().lblFrequency.Click();  // a menu is open
    f.order.clear();
    for (int request = 0; request < 2; ++request) {  // nothing is done twice
      EXPECT_EQ(f.Close(), !capturing);
      EXPECT_EQ(f.order, order);
    }
    EXPECT_FALSE(f.program->catForm.Window.visible || f.prompts.popupClosed || f.ended);
    f.scheduler.Advance(Milliseconds(5));
    EXPECT_TRUE(f.ended);
    EXPECT_EQ(f.order, order);
    EXPECT_FALSE(f.rig1.Transmits() || f.program->rig.link.On());
    const int laidOut = f.Form().Scope.scaleWidth;
    f.Form().Window.widthTwips = 6000;
    EXPECT_EQ(f.Form().Scope.scaleWidth, laidOut);
  }
}

TEST(Shutdown, SettingsThatCannotBeSavedAreAskedAboutWhileSomebodyIsThere) {
  enum { TryAgain, CloseAnyway, SystemEnds, SystemEndsAtOnce };
  for (const auto& [then, asked] :
       {std::pair{TryAgain, 2U}, {CloseAnyway, 1U}, {SystemEnds, 1U}, {SystemEndsAtOnce, 0U}}) {
    ProgramFixture f;
    f.Start();
    f.store.commit = [] { return ENOSPC; };
    f.prompts.asked.clear();
    if (then != SystemEndsAtOnce) f.Close();
    if (then == TryAgain) f.prompts.answer(true);  // and it fails again
    if (then == TryAgain) f.store.commit = [] { return 0; };
    if (then >= SystemEnds) f.Close(Shutdown::ClosedBy::System);
    if (then <= CloseAnyway) f.prompts.answer(then == TryAgain);
    f.scheduler.RunPosted();
    EXPECT_TRUE(f.ended);
    EXPECT_EQ(f.prompts.answer == nullptr, then >= SystemEnds);
    EXPECT_EQ(f.prompts.asked.size(), asked);
    for (const MessagePrompt& box : f.prompts.asked) {
      EXPECT_EQ(box.text, "The settings could not be saved: No space left on device.");
    }
  }
}

TEST(Shutdown, ARigThatIsStillShiftedIsMovedBackAndHasTimeToAnswer) {
  for (const bool atOnce : {false, true}) {
    for (const int answer : {0, 45, 495, 60'000}) {
      SCOPED_TRACE(answer);
      Sequence f(atOnce, true);
      f.Start();
      if (atOnce) f.StartCapture();
      f.Key(2);
      f.rig1.AnswerAfter(Milliseconds(answer));
      f.Form().Image2.Click();
      if (atOnce) {
        f.prompts.Choose("Close VELT-SA ");
      } else {
        EXPECT_EQ(f.Close(), answer == 0);
      }
      f.Form().mnuPTT_ON.Click();  // nothing is keyed any more
      EXPECT_EQ(f.writes1.Take(), (std::vector<std::string>{"RX", "Freq 14074000"}));
      const Milliseconds least(std::min(answer, 500));
      if (answer != 0) f.scheduler.Advance(least - Milliseconds(1));
      EXPECT_FALSE(answer != 0 && (f.ended || f.order.starts_with("save")));
      f.scheduler.Advance(Milliseconds(10));
      EXPECT_TRUE(f.ended);
      // The immediate end saves nothing, and capture does not go on after its menu.
      EXPECT_EQ(f.order, atOnce ? "stop-capture " : "save last-14074000 ");
      EXPECT_EQ(f.Stored("EXE") == "(missing)", atOnce);
    }
  }
}

}  // namespace
}  // namespace velt

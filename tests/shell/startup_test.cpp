#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

TEST(Startup, ResetDeletesTheSettingsAndStartsNothing) {
  ProgramFixture f;
  f.store.Save("VELT-SA", "Slider", "33");
  f.store.Save("CAT", "Rig1", "x");
  f.setup.resetSettings = true;
  f.Restart();
  EXPECT_EQ(f.Start(), Startup::Result::SettingsReset);
  EXPECT_EQ(f.Stored("Slider"), "(missing)");
  EXPECT_FALSE(f.store.Get("CAT", "Rig1"));
  EXPECT_TRUE(f.files.folders.empty());
}

TEST(Startup, ASecondInstanceEndsSilentlyUnlessExempt) {
  ProgramFixture f;
  f.lock.alone = false;
  EXPECT_EQ(f.Start(), Startup::Result::AnotherInstance);
  EXPECT_TRUE(f.files.folders.empty());
  f.setup.exemptFromSingleInstance = true;
  f.Restart();
  EXPECT_EQ(f.Start(), Startup::Result::Running);
}

TEST(Startup, AFolderThatCannotBeMadeIsToldAndDoesNotKeepTheOthersFromBeingMade) {
  ProgramFixture f;
  f.files.unmakable = {"/home/om/VELT/WAV"};
  f.Start();
  EXPECT_TRUE(f.files.folders.contains("/home/om/VELT/BMP"));
  EXPECT_NE(f.log.lines.at(0).find("/home/om/VELT/WAV could not be made"), std::string::npos);
}

// What happens while the program starts and ends, in its order, as those see it who stand around.
struct Sequence : ProgramFixture {
  std::string order;
  Connections watching;

  // A restarted program with its events written down; `engine`: one is installed.
  explicit Sequence(bool engine) {
    if (engine) {
      files.files["/opt/engine/velt.jar"] = "";
      files.files["/opt/engine/zoka.ver"] = " VELT V9.9 \n";
    }
    store.Save("VELT-SA", "Version", "3.0.0");
    Program& p = *program;
    const auto note = [this](const char* what) { return [this, what] { order += what; }; };
    watching += p.form.mnurunzoka.clicked.Listen([this] {
      order += files.folders.contains("/home/om/VELT/WAV") ? "engine " : "engine-early ";
    });
    watching += p.form.mnuclosezoka.clicked.Listen(note("close-engine "));
    watching += p.form.tmrStatus.ticked.Listen([this] {
      // The timer's own ticks come later.
      if (rigShown) order += "status ";
    });
    watching += p.startup.rigOffLine.Listen(note("off-line "));
    watching += p.shutdown.lastFrequency.Listen(
        [this](int32_t hz) { order += "last-" + std::to_string(hz) + " "; });
    watching +=
        p.shutdown.rigOff.Listen([this] { order += Form().lblTRXMode.caption.Get() + " "; });
    watching += p.rig.display.statusShown.Listen([this] {
      if (std::exchange(rigShown, true)) return;
      order += audio.opened == 1 ? "capture rig " : "rig ";
    });
    audio.closed = [this] { order += "stop-capture "; };
    store.committed = [this] {
      order += rig1.Link().state == RigLink::State::Off ? "save-late " : "save ";
    };
  }
  bool rigShown = false;
};

TEST(Startup, GoesThroughItsStepsInOrder) {
  Sequence f(true);
  f.Reachable(true);
  f.store.Save("VELT-SA", "AutoStartSA", "True");
  f.store.Save("VELT-SA", "Expander", "1");
  f.Start();
  EXPECT_EQ(f.order, "engine capture rig status ");
  Main& form = f.Form();
  EXPECT_EQ(form.Window.caption.Get(), "VELT-SA - Engine VELT V9.9 - Rig Simulated rig");
  EXPECT_TRUE(form.tmrCheckZOKA.enabled && form.Timer1.enabled && form.imgRecOnOff.enabled);
  EXPECT_EQ(form.imgRecOnOff.tag.Get(), "");  // nothing is being recorded
  EXPECT_EQ(form.imgStartStop.tag.Get(), "Stop");
  EXPECT_EQ(form.chkExpand.value, 1);
  // A later restart of the link undoes no choice of the user's.
  form.chkExpand.UserPick(false);
  f.program->rig.dialog.Open();
  f.program->catForm.cmdStartStop.Click();
  f.program->catForm.cmdStartStop.Click();
  f.scheduler.RunPosted();
  EXPECT_EQ(form.lblFrequency.caption.Get(), "14.074.00");
  EXPECT_EQ(form.chkExpand.value, 0);
}

TEST(Startup, WithoutAnEngineItsItemsAreOff) {
  Sequence f(false);
  f.store.Save("VELT-SA", "AutoRunZOKA", "True");
  f.Start();
  Main& form = f.Form();
  EXPECT_EQ(form.Window.caption.Get(), "VELT-SA");
  for (const MenuItem* item :
       {&form.mnuautos[0], &form.mnuautos[1], &form.mnurunzoka, &form.mnuclosezoka}) {
    EXPECT_FALSE(item->enabled);
  }
  EXPECT_FALSE(form.lblMode.enabled);
  EXPECT_EQ(f.order, "off-line ");
  EXPECT_FALSE(form.tmrCheckZOKA.enabled);
}

// A rig can be missing in two ways, and be switched on or reached later.
TEST(Startup, ARigThatIsOffLineIsToldAndFollowedWhenItComes) {
  for (const bool serverUp : {false, true}) {
    Sequence f(false);
    f.Reachable(serverUp);
    f.store.Save("VELT-SA", "Version", "");
    f.rig1.Tune(0);
    f.Start();
    EXPECT_EQ(f.Form().lblFrequency.caption.Get(), "RigOffLine");
    EXPECT_EQ(f.order, serverUp ? "rig status off-line " : "off-line ");
    f.order.clear();
    f.rig1.Tune(14074000);
    f.rig1.ComeBack();
    f.scheduler.RunPosted();
    EXPECT_EQ(f.Form().lblFrequency.caption.Get(), "14.074.00");
    EXPECT_EQ(f.order, serverUp ? "" : "rig status ");
    EXPECT_EQ(f.Form().chkExpand.value, 1);
  }
}

TEST(Startup, WhatAFirstRunWithoutARigNeverAppliedIsNotLost) {
  ProgramFixture f;
  f.Start();
  f.Close();
  EXPECT_EQ(f.Stored("Expander") + f.Stored("OnTop"), "11");
  f.Restart();
  f.Start();
  EXPECT_EQ(f.Form().chkExpand.value, 1);
  f.Form().chkExpand.UserPick(false);
  f.Form().mnusettings[0].Click();
  f.Close();
  EXPECT_EQ(f.Stored("Expander") + f.Stored("OnTop"), "00");
}

TEST(Startup, WhatTheCallAsksForComesBeforeTheSettings) {
  ProgramFixture f;
  f.setup.startAnalyser = true;
  f.setup.dataFolder = "/data";
  f.Restart();
  f.audio.answer = FakeAudioInput::Answer::Failed;
  f.Start();
  EXPECT_TRUE(f.files.folders.contains("/data/WAV"));
  EXPECT_EQ(f.audio.opened, 1);
  EXPECT_FALSE(f.audio.watching);
  EXPECT_TRUE(f.Form().imgRecOnOff.enabled);
}

TEST(Shutdown, GoesThroughItsStepsInOrder) {
  struct Case {
    bool rigUp, capturing, keyed;
    std::string order;
  };
  for (const Case& c :
       {Case{true, false, false, "save close-engine last-14074000 "},
        {false, false, false, "save close-engine OFF "},
        {true, true, true, "release save close-engine last-14074000 stop-capture "}}) {
    Sequence f(true);
    f.Reachable(c.rigUp);
    f.watching += f.rig1.written.Listen([&f](const std::string& what) {
      if (what == "RX") f.order += "release ";
    });
    f.Start();
    if (c.capturing) f.StartCapture();
    if (c.keyed) f.Form().mnuPTT_ON.Click();
    f.scheduler.Advance(Milliseconds(300));
    f.program->rig.dialog.Open();
    f.Form().lblFrequency.Click();  // a menu is open
    f.order.clear();
    EXPECT_EQ(f.Close(), !c.capturing);
    EXPECT_EQ(f.order, c.order);
    EXPECT_FALSE(f.program->catForm.Window.visible);
    EXPECT_FALSE(f.prompts.popupClosed);
    EXPECT_EQ(f.ended, false);
    EXPECT_EQ(f.Close(), !c.capturing);  // asked again meanwhile: nothing is done twice
    f.scheduler.Advance(Milliseconds(5));
    EXPECT_TRUE(f.ended);
    EXPECT_EQ(f.order, c.order);
    EXPECT_FALSE(f.rig1.Transmits());
    EXPECT_FALSE(f.program->rig.link.On());
    const int laidOut = f.Form().Scope.scaleWidth;
    f.Form().Window.widthTwips = 6000;
    EXPECT_EQ(f.Form().Scope.scaleWidth, laidOut);
  }
}

TEST(Shutdown, SettingsThatCannotBeSavedAreAskedAboutWhileSomebodyIsThere) {
  enum class Then { TryAgain, CloseAnyway, SystemEnds };
  for (const Then then : {Then::TryAgain, Then::CloseAnyway, Then::SystemEnds}) {
    ProgramFixture f;
    f.Start();
    f.store.error = ENOSPC;
    f.prompts.asked.clear();
    EXPECT_FALSE(f.Close());
    f.scheduler.RunPosted();
    ASSERT_EQ(f.prompts.asked.size(), 1U);
    EXPECT_EQ(f.prompts.asked[0].text, "The settings could not be saved: No space left on device.");
    EXPECT_EQ(f.prompts.asked[0].yes + f.prompts.asked[0].no, "Try againClose anyway");
    EXPECT_FALSE(f.ended);
    if (then == Then::TryAgain) {
      f.prompts.answer(true);  // and it fails again
      EXPECT_EQ(f.prompts.asked.size(), 2U);
      f.store.error = 0;
      f.prompts.answer(true);
    } else if (then == Then::CloseAnyway) {
      f.prompts.answer(false);
    } else {
      f.Close(Shutdown::ClosedBy::System);
    }
    f.scheduler.RunPosted();
    EXPECT_TRUE(f.ended);
    EXPECT_EQ(f.prompts.answer == nullptr, then == Then::SystemEnds);
    EXPECT_EQ(f.Stored("EXE") == "VELT-SA.exe", true);
  }
  ProgramFixture f;
  f.Start();
  f.store.error = ENOSPC;
  f.prompts.asked.clear();
  f.Close(Shutdown::ClosedBy::System);
  f.scheduler.RunPosted();
  EXPECT_TRUE(f.ended);
  EXPECT_TRUE(f.prompts.asked.empty());
}

TEST(Shutdown, TheImmediateEndReleasesAndSavesNothing) {
  Sequence f(true);
  f.Reachable(true);
  f.Start();
  f.StartCapture();
  f.Form().mnuPTT_ON.Click();
  f.scheduler.Advance(Milliseconds(300));
  f.order.clear();
  f.Form().Image2.Click();
  EXPECT_EQ(f.order, "stop-capture ");
  f.prompts.Choose("Close VELT-SA ");
  f.scheduler.RunPosted();
  EXPECT_TRUE(f.ended);
  EXPECT_FALSE(f.rig1.Transmits());
  EXPECT_EQ(f.order, "stop-capture ");
  EXPECT_EQ(f.audio.opened, 1) << "capture does not go on after this menu";
  EXPECT_EQ(f.Stored("EXE"), "(missing)");
}

TEST(Shutdown, ARigThatIsStillShiftedIsMovedBackBeforeTheLinkIsClosed) {
  Sequence f(false);
  f.Reachable(true);
  f.Start();
  f.program->rig.state.offsetKHz = 2;
  f.program->rig.display.ShowRigParams();
  f.Form().mnuPTT_ON.Click();
  f.scheduler.Advance(Milliseconds(300));
  f.order.clear();
  f.writes1.Take();
  EXPECT_FALSE(f.Close());
  EXPECT_EQ(f.writes1.Take(), (std::vector<std::string>{"RX", "Freq 14074000"}));
  EXPECT_EQ(f.order, "");
  f.scheduler.Advance(Milliseconds(300));
  EXPECT_EQ(f.order, "status save last-14074000 ");
  EXPECT_TRUE(f.ended);
}

// The rig at start-up, through the whole program.
struct RigInTheProgram : ProgramFixture, testing::Test {
  RigInTheProgram() { Reachable(true); }
};

TEST_F(RigInTheProgram, ItIsShownFollowedAndKeyedFromTheMenu) {
  ProgramFixture& f = *this;
  f.Start();
  Main& form = f.Form();
  EXPECT_EQ(form.lblFrequency.caption.Get(), "14.074.00");
  EXPECT_EQ(form.lblFrequencyExpand.caption.Get(), "14.074.00");
  EXPECT_EQ(form.lblMode.caption.Get(), "USB");
  EXPECT_EQ(form.Window.caption.Get(), "VELT-SA - Rig Simulated rig");
  form.lblFrequency.Click();
  f.prompts.Choose("12m");
  EXPECT_EQ(f.writes1.Take(), std::vector<std::string>{"Freq 24900000"});
  f.scheduler.RunPosted();
  EXPECT_EQ(form.lblFrequency.caption.Get(), "24.900.00");
  f.StartCapture();  // the mode can be clicked while capture runs
  form.lblMode.Click();
  f.prompts.Choose("LSB");
  form.lblTRXMode.Click();
  f.prompts.Choose("&TX");
  EXPECT_EQ(f.writes1.Take(), (std::vector<std::string>{"Mode " + std::to_string(PM_SSB_L), "TX"}));
  EXPECT_TRUE(f.rig1.Transmits());
}

TEST(RigAtStartup, AnUnreachableServerIsAskedAboutOnceAndComesBackByItself) {
  ProgramFixture f;
  f.Start();
  f.scheduler.RunPosted();
  EXPECT_EQ(f.Form().lblFrequency.caption.Get(), "RigOffLine");
  ASSERT_EQ(f.prompts.asked.size(), 1U);
  EXPECT_EQ(f.prompts.asked[0].title, "OmniRig not Configured for CAT");
  f.prompts.answer(true);
  EXPECT_TRUE(f.program->catForm.Window.visible);
}

TEST(RigAtStartup, AddressesAndLimitAreKeptInTheirOwnSection) {
  ProgramFixture f;
  f.store.Save("CAT", "Rig2", "10.0.0.7:4600");
  f.store.Save("CAT", "TransmissionLimitMinutes", "99");
  f.Start();
  EXPECT_EQ(f.server.Address(2), "10.0.0.7:4600");
  EXPECT_EQ(f.program->rig.guard.LimitMinutes(), 60);
  f.program->settings.SaveRegistryStuff();
  EXPECT_EQ(f.store.Get("CAT", "Rig2"), "10.0.0.7:4600");
  EXPECT_EQ(f.store.Get("CAT", "Rig1"), std::nullopt);  // never set up
  f.program->rig.dialog.Open();
  f.program->catForm.txtAddress1.UserText("localhost:4540");
  f.program->catForm.cmdApplyAddresses.Click();
  f.program->settings.SaveRegistryStuff();
  EXPECT_EQ(f.store.Get("CAT", "Rig1"), "localhost:4540");
  // An address for one run only is used, and not kept.
  f.setup.rigAddresses[1] = "shack:4601";
  f.Restart();
  f.Start();
  EXPECT_EQ(f.server.Address(2), "shack:4601");
  f.program->settings.KeepRigAddresses();
  f.program->settings.SaveRegistryStuff();
  EXPECT_EQ(f.store.Get("CAT", "Rig2"), "10.0.0.7:4600");
}

}  // namespace
}  // namespace velt

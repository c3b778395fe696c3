#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

TEST(Startup, ResetDeletesTheSettingsAndStartsNothing) {
  ProgramFixture f;
  f.store.Save("VELT-SA", "Slider", "33");
  f.store.Save("CAT", "Rig1", "x");
  RunOptions options;
  options.resetSettings = true;
  EXPECT_EQ(f.Start(options), Startup::Result::SettingsReset);
  EXPECT_EQ(f.Stored("Slider"), "(missing)");
  EXPECT_FALSE(f.store.Get("CAT", "Rig1"));
  EXPECT_TRUE(f.files.folders.empty());
}

TEST(Startup, ASecondInstanceEndsSilentlyUnlessExempt) {
  ProgramFixture f;
  f.lock.alone = false;
  EXPECT_EQ(f.Start(), Startup::Result::AnotherInstance);
  EXPECT_TRUE(f.files.folders.empty());
  RunOptions options;
  options.exemptFromSingleInstance = true;
  EXPECT_EQ(f.Start(options), Startup::Result::Running);
}

TEST(Startup, WithoutAnEngineItsItemsAreOff) {
  ProgramFixture f;
  f.store.Save("VELT-SA", "AutoRunZOKA", "True");
  int engineStarts = 0;
  f.program->startup.steps.mnurunzoka_Click = [&] { ++engineStarts; };
  f.Start();
  Main& form = f.Form();
  EXPECT_EQ(form.Window.caption.Get(), "VELT-SA");
  for (const MenuItem* item :
       {&form.mnuautos[0], &form.mnuautos[1], &form.mnurunzoka, &form.mnuclosezoka}) {
    EXPECT_FALSE(item->enabled);
  }
  EXPECT_FALSE(form.lblMode.enabled);
  EXPECT_EQ(engineStarts, 0);
  EXPECT_FALSE(form.tmrCheckZOKA.enabled);
}

TEST(Startup, RunsItsStepsInOrder) {
  ProgramFixture f;
  f.files.files["/opt/engine/velt.jar"] = "";
  f.files.files["/opt/engine/zoka.ver"] = " VELT V9.9 \n";
  f.store.Save("VELT-SA", "Version", "3.0.0");
  f.store.Save("VELT-SA", "AutoStartSA", "True");
  std::string order;
  StartupSteps& steps = f.program->startup.steps;
  std::function<void()> online;
  steps.loadPresets = [&] {
    EXPECT_TRUE(f.files.folders.contains("/home/om/VELT/WAV"));
    order += "presets ";
  };
  steps.mnurunzoka_Click = [&] { order += "engine "; };
  steps.ReadRS232 = [&] { order += f.audio.opened == 0 ? "serial " : "serial-late "; };
  steps.StartOmniRig = [&](std::function<void()> stands, const std::function<void()>& offLine) {
    order += f.audio.opened == 1 ? "rig " : "rig-early ";
    online = std::move(stands);
    offLine();
  };
  steps.writeOffLineStatus = [&] { order += "off-line "; };
  steps.offerFrequencyCounter = [&] { order += "counter "; };
  steps.tmrStatus_Timer = [&] { order += "status "; };
  steps.ShowRigParams = [&] { order += "params "; };
  steps.rigType = [] { return std::string("IC-7300"); };
  f.Start();
  EXPECT_EQ(order, "presets engine serial rig off-line counter ");
  EXPECT_EQ(f.Form().Window.caption.Get(), "VELT-SA - Engine VELT V9.9");
  EXPECT_TRUE(f.Form().tmrCheckZOKA.enabled);
  EXPECT_TRUE(f.Form().Timer1.enabled);
  EXPECT_EQ(f.Form().imgStartStop.tag.Get(), "Stop");
  EXPECT_TRUE(f.Form().imgRecOnOff.enabled);
  order.clear();
  online();  // the server answers later
  EXPECT_EQ(order, "status params ");
  EXPECT_EQ(f.Form().Window.caption.Get(), "VELT-SA - Engine VELT V9.9 - Rig IC-7300");
}

struct ShutdownFixture : ProgramFixture {
  std::string order;
  ShutdownFixture() {
    Start();
    ShutdownSteps& steps = program->shutdown.steps;
    steps.StopOmniRig = [this] { order += Stored("EXE") == "VELT-SA.exe" ? "rig " : "rig-early "; };
    steps.SaveExpandedPresets = [this] { order += "presets "; };
    steps.mnuclosezoka_Click = [this] { order += "engine "; };
    steps.WriteStatusRX = [this] { order += "status "; };
    steps.writeOffStatus = [this] { order += Form().lblTRXMode.caption.Get() + " "; };
    steps.closeSerialPort = [this] { order += "serial "; };
  }
};

TEST(Shutdown, RunsItsStepsInOrderAndEnds) {
  ShutdownFixture f;
  f.Form().lblFrequency.caption = std::string("14.074.00");
  EXPECT_TRUE(f.Close());
  EXPECT_EQ(f.order, "rig presets status serial ");
  f.scheduler.RunPosted();
  EXPECT_TRUE(f.ended);
}

TEST(Shutdown, OffLineTheStateIsWrittenAsOff) {
  ShutdownFixture f;
  f.Form().mnuautos[1].checked = true;
  EXPECT_TRUE(f.Close());
  EXPECT_EQ(f.order, "rig presets engine OFF serial ");
}

TEST(Shutdown, WhileCapturingTheWindowStaysForOneTick) {
  ShutdownFixture f;
  f.StartCapture();
  EXPECT_FALSE(f.Close());
  EXPECT_FALSE(f.audio.open);
  f.scheduler.RunPosted();
  EXPECT_FALSE(f.ended);
  EXPECT_FALSE(f.Close());  // asked again meanwhile: nothing is done twice
  f.scheduler.Advance(Milliseconds(5));
  EXPECT_TRUE(f.ended);
  EXPECT_EQ(f.order, "rig presets OFF serial ");
}

TEST(Shutdown, TheImmediateEndReleasesAndSavesNothing) {
  ShutdownFixture f;
  f.StartCapture();
  f.Form().Image2.Click();
  f.prompts.Choose("Close VELT-SA ");
  f.scheduler.RunPosted();
  EXPECT_TRUE(f.ended);
  EXPECT_EQ(f.order, "");
  EXPECT_EQ(f.audio.opened, 1) << "capture does not go on after this menu";
  EXPECT_EQ(f.Stored("EXE"), "(missing)");
}

TEST(Shutdown, ARigThatIsStillShiftedIsMovedBackBeforeTheLinkIsClosed) {
  ShutdownFixture f;
  f.program->shutdown.steps.restoreRigFrequency = [&f] {
    f.order += "restore ";
    return true;
  };
  EXPECT_FALSE(f.Close());
  EXPECT_EQ(f.order, "restore ");
  f.scheduler.Advance(Milliseconds(300));
  EXPECT_EQ(f.order, "restore rig presets OFF serial ");
  EXPECT_TRUE(f.ended);
}

// The rig at start-up, through the whole program.
struct RigFixture : ProgramFixture {
  RigFixture() {
    server.reachable = {true, true};
    for (auto& rig : server.rigs) {
      rig.shown.freq = rig.shown.rx = 14074000;
      rig.shown.mode = PM_SSB_U;
    }
  }
};

TEST(RigInTheProgram, ItIsShownFollowedAndKeyedFromTheMenu) {
  RigFixture f;
  f.Start();
  Main& form = f.Form();
  EXPECT_EQ(form.lblFrequency.caption.Get(), "14.074.00");
  EXPECT_EQ(form.lblFrequencyExpand.caption.Get(), "14.074.00");
  EXPECT_EQ(form.lblMode.caption.Get(), "USB");
  EXPECT_EQ(form.Window.caption.Get(), "VELT-SA - Rig Maker Model");
  form.lblFrequency.Click();
  f.prompts.Choose("12m");
  EXPECT_EQ(f.server.rigs[0].TakeWrites(), std::vector<std::string>{"Freq 24900000"});
  f.scheduler.RunPosted();
  EXPECT_EQ(form.lblFrequency.caption.Get(), "24.900.00");
  f.StartCapture();  // the mode can be clicked while capture runs
  form.lblMode.Click();
  f.prompts.Choose("LSB");
  form.lblTRXMode.Click();
  f.prompts.Choose("&TX");
  EXPECT_EQ(f.server.rigs[0].TakeWrites(),
            (std::vector<std::string>{"Mode " + std::to_string(PM_SSB_L), "TX"}));
  EXPECT_EQ(f.server.rigs[0].txReally, PM_TX);
}

TEST(RigInTheProgram, EveryKindOfEndReleasesTheTransmitterThatItKeyed) {
  for (const bool immediately : {false, true}) {
    RigFixture f;
    f.Start();
    f.Form().mnuPTT_ON.Click();
    f.scheduler.Advance(Milliseconds(500));
    if (immediately) {
      f.Form().mnucloseme.Click();
    } else {
      f.Close();
    }
    EXPECT_EQ(f.server.rigs[0].txReally, PM_RX);
  }
}

TEST(RigInTheProgram, AnUnreachableServerIsAskedAboutOnceAndComesBackByItself) {
  ProgramFixture f;
  f.Start();
  f.scheduler.RunPosted();
  EXPECT_EQ(f.Form().lblFrequency.caption.Get(), "RigOffLine");
  ASSERT_EQ(f.prompts.asked.size(), 1U);
  EXPECT_EQ(f.prompts.asked[0].title, "OmniRig not Configured for CAT");
  f.prompts.answer(true);
  EXPECT_TRUE(f.program->catForm.Window.visible);
}

TEST(RigInTheProgram, AddressesAndLimitAreKeptInTheirOwnSection) {
  ProgramFixture f;
  f.store.Save("CAT", "Rig2", "10.0.0.7:4600");
  f.store.Save("CAT", "TransmissionLimitMinutes", "99");
  f.Start();
  EXPECT_EQ(f.server.Address(2), "10.0.0.7:4600");
  EXPECT_EQ(f.program->rig.guard.LimitMinutes(), 60);
  f.program->settings.SaveRegistryStuff();
  EXPECT_EQ(f.store.Get("CAT", "Rig2"), "10.0.0.7:4600");
  EXPECT_EQ(f.store.Get("CAT", "Rig1"), std::nullopt);  // never set up
  f.server.SetAddress(1, "localhost:4540");
  f.program->settings.KeepRigAddresses();
  f.program->settings.SaveRegistryStuff();
  EXPECT_EQ(f.store.Get("CAT", "Rig1"), "localhost:4540");
  // An address for one run only is used, and not kept.
  f.Restart();
  f.program->settings.addressesOfThisRun[1] = "shack:4601";
  f.Start();
  EXPECT_EQ(f.server.Address(2), "shack:4601");
  f.program->settings.KeepRigAddresses();
  f.program->settings.SaveRegistryStuff();
  EXPECT_EQ(f.store.Get("CAT", "Rig2"), "10.0.0.7:4600");
}

}  // namespace
}  // namespace velt

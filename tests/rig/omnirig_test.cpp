#include "rig_fixture.h"

namespace velt {
namespace {

using OmniRigLinkTest = RigFixture;
using OmniRigDialogTest = RigFixture;

TEST_F(OmniRigLinkTest, OnlyVersionsInsideTheGateStart) {
  for (const auto& [version, accepted] :
       {std::pair{0x100, false}, {0x101, true}, {0x299, true}, {0x29A, false}}) {
    server.SetInterfaceVersion(version);
    rig.link.StartOmniRig({});
    EXPECT_FALSE(rig.current.Exists());  // the answer comes later
    scheduler.RunPosted();
    EXPECT_EQ(rig.link.On(), accepted) << version;
    EXPECT_EQ(rig.current.Exists(), accepted) << version;
    rig.link.StopOmniRig();
  }
  EXPECT_EQ(prompts.asked.size(), 1U);  // two failures, one question
}

TEST_F(OmniRigDialogTest, AServerOutOfReachIsToldAndTriedOnUntilTheRigStarts) {
  Texts answers;
  Reachable(false);
  rig.link.StartOmniRig([&](bool online) { answers.push_back(online ? "on line" : "off line"); });
  scheduler.RunPosted();
  EXPECT_EQ(answers, Texts{"off line"});
  rig.link.StopOmniRig();
  form.Image3.Click();
  ASSERT_TRUE(dialogForm.Window.visible);
  dialogForm.cmdStartStop.Click();
  EXPECT_EQ(dialogForm.lblLink.caption.Get(), "Connecting");
  scheduler.RunPosted();
  EXPECT_EQ(prompts.told.at(0).text, "OmniRig is not installed or has a wrong version number");
  EXPECT_EQ(dialogForm.cmdStartStop.caption.Get(), "Stop");
  rig2.ComeBack();  // not the one to start with
  scheduler.RunPosted();
  EXPECT_FALSE(rig.current.Exists());
  rig1.ComeBack();
  scheduler.RunPosted();
  // What the stopped start would have gone on with is not done by a later one.
  EXPECT_EQ(answers, Texts{"off line"});
  EXPECT_EQ(Frequency(), "7.100.00");
  EXPECT_FALSE(form.lblFrequency.stale);
}

TEST_F(OmniRigLinkTest, WithoutAUserNothingIsAsked) {
  Reachable(false);
  setup.questions = OmniRigLink::Questions::Never;
  Restart();
  program->rig.link.StartOmniRig({});
  scheduler.RunPosted();
  EXPECT_EQ(program->form.lblFrequency.caption.Get(), "RigOffLine");
  EXPECT_TRUE(prompts.asked.empty());
}

TEST_F(OmniRigLinkTest, EventsOfTheOtherRigChangeNothing) {
  Link();
  const std::string& shown = form.lblMode.caption.Get();
  server.Open(2, {});
  scheduler.RunPosted();
  EXPECT_EQ(shown, "LSB");
  rig.link.SelectRig(2);
  scheduler.RunPosted();
  EXPECT_EQ(shown, "USB");
  rig1.Select(PM_FM);
  scheduler.RunPosted();
  EXPECT_EQ(shown, "USB");
}

TEST_F(OmniRigLinkTest, TheRigToStartWithIsTwoOrElseOne) {
  for (const auto& [choice, number] : {std::pair{2, 2}, {1, 1}, {0, 1}, {7, 1}}) {
    rig.state.rigChoice = static_cast<int16_t>(choice);
    Link();
    EXPECT_EQ(rig.current.Number(), number) << choice;
    rig.link.StopOmniRig();
  }
  rig1.Vanish();
  rig.link.StartOmniRig({});
  rig.link.ChooseRig(2);  // while the other is being opened
  scheduler.RunPosted();
  EXPECT_EQ(rig.current.Number(), 2);
}

TEST_F(OmniRigLinkTest, ALostLinkKeepsTheLastValuesAsStale) {
  Link();
  const std::string status = "Transceiver Frequency. Click to set TRX. RIG STATUS: ";
  EXPECT_EQ(form.lblFrequency.toolTip.Get(), status + "On-line");
  rig1.Vanish();
  scheduler.RunPosted();
  EXPECT_EQ(Frequency(), "7.100.00");
  for (const RigLabel* label :
       {&form.lblFrequency, &form.lblFrequencyExpand, &form.lblMode, &form.lblTRXMode}) {
    EXPECT_TRUE(label->stale);
  }
  EXPECT_EQ(form.lblFrequency.toolTip.Get(), status + "Port is not available");
}

TEST_F(OmniRigDialogTest, RigVfoAndModeHoldForTheMainWindowAtOnce) {
  Link();
  int changes = 0;
  const Connection changed = rig.dialog.settingsChanged.Listen([&] { ++changes; });
  rig.state.vfo = 3;
  rig.dialog.Open();
  EXPECT_TRUE(dialogForm.optVFO[3].value && dialogForm.Option1.value);
  dialogForm.Option2.UserPick();
  scheduler.RunPosted();
  EXPECT_EQ(Frequency(), "14.250.00");
  dialogForm.optVFO[1].UserPick();
  EXPECT_FALSE(dialogForm.optVFO[3].value || dialogForm.Option1.value);
  EXPECT_EQ(changes, 2);
  dialogForm.Option1.UserPick();
  int index = 0;
  for (const int32_t mode : {PM_SSB_L, PM_SSB_U, PM_CW_U, PM_AM, PM_FM}) {
    EXPECT_EQ(WritesAfter([&] { dialogForm.Combo1.UserPick(index); }),
              Texts{"Mode " + std::to_string(mode)});
    ++index;
  }
}

TEST_F(OmniRigDialogTest, StoppedByHandNothingIsKnownOfTheRig) {
  Start();
  Link();
  EXPECT_EQ(form.Window.caption.Get(), "VELT-SA - Rig Simulated rig");
  rig.dialog.Open();
  dialogForm.cmdStartStop.Click();
  EXPECT_EQ(Frequency(), "RigOffLine");
  EXPECT_EQ(form.lblMode.caption.Get(), "N/A");
  EXPECT_EQ(form.Window.caption.Get(), "VELT-SA");
  EXPECT_EQ(dialogForm.Label8.caption.Get(), "");
  form.mnuRig.Click();
  EXPECT_FALSE(form.mnuSetFreqManual.enabled);
}

TEST_F(OmniRigDialogTest, ABadAddressOrLimitLosesNothing) {
  rig.dialog.Open();
  dialogForm.txtAddress1.UserText("radio.local:4532");
  dialogForm.txtAddress2.UserText("nonsense");
  dialogForm.Command1.Click();
  EXPECT_TRUE(dialogForm.Window.visible);
  EXPECT_EQ(server.Address(1), "radio.local:4532");
  EXPECT_EQ(server.Address(2), "127.0.0.1:4534");
  EXPECT_EQ(dialogForm.lblAddressMessage.caption.Get(),
            "Rig 2: \"nonsense\" is no address. Use HOST:PORT, for example 127.0.0.1:4532");
  dialogForm.txtAddress2.UserText(" 10.0.0.2:4534 ");
  EXPECT_EQ(dialogForm.lblAddressMessage.caption.Get(), "");
  dialogForm.Command1.Click();
  EXPECT_EQ(server.Address(2), "10.0.0.2:4534");
  EXPECT_FALSE(dialogForm.Window.visible);

  rig.dialog.Open();
  for (const auto& [typed, minutes] :
       {std::pair{"0", 10}, {"1", 1}, {"60", 60}, {"61", 60}, {"", 60}, {"5.5", 60}, {" 7 ", 7}}) {
    dialogForm.txtLimit.UserText(typed);
    EXPECT_EQ(rig.guard.LimitMinutes(), minutes) << typed;
    EXPECT_EQ(dialogForm.lblLimitMessage.caption.Get().empty(), minutes == std::atoi(typed))
        << typed;
  }
}

}  // namespace
}  // namespace velt

#include "rig_fixture.h"

namespace velt {
namespace {

using OmniRigTest = RigFixture;

TEST_F(OmniRigTest, OnlyVersionsInsideTheGateStartAndRigTwoOrElseOne) {
  for (const auto& [version, choice, number] :
       {std::tuple{0x100, 1, 0}, {0x101, 2, 2}, {0x101, 0, 1}, {0x299, 7, 1}, {0x29A, 1, 0}}) {
    server.SetInterfaceVersion(version);
    rig.state.rigChoice = static_cast<int16_t>(choice);
    rig.link.StartOmniRig({});
    EXPECT_FALSE(rig.current.Exists());  // the answer comes later
    scheduler.RunPosted();
    EXPECT_EQ(rig.link.On(), number != 0) << version;
    EXPECT_EQ(rig.current.Number(), number) << version;
    rig.link.StopOmniRig();
  }
  EXPECT_EQ(prompts.asked.size(), 1U);  // two failures, one question
}

TEST_F(OmniRigTest, AServerOutOfReachIsToldAndTriedOnUntilTheRigStarts) {
  Texts answers;
  Reachable(false);
  rig.link.StartOmniRig([&](bool online) { answers.push_back(online ? "on line" : "off line"); });
  scheduler.RunPosted();
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

TEST_F(OmniRigTest, AnotherRigCanBeChosenWhileTheFirstIsBeingOpened) {
  rig1.Vanish();
  rig.link.StartOmniRig({});
  rig.link.ChooseRig(2);
  scheduler.RunPosted();
  EXPECT_EQ(rig.current.Number(), 2);
  rig1.ComeBack();
  rig1.Select(PM_FM);
  scheduler.RunPosted();
  EXPECT_EQ(form.lblMode.caption.Get(), "USB") << "the other rig's events change nothing";
}

TEST_F(OmniRigTest, ALostLinkKeepsTheLastValuesAsStaleAndAStoppedOneKnowsNothing) {
  Start();
  Link();
  EXPECT_EQ(form.Window.caption.Get(), "VELT-SA - Rig Simulated rig");
  rig1.Vanish();
  scheduler.RunPosted();
  EXPECT_EQ(Frequency(), "7.100.00");
  for (const RigLabel* label :
       {&form.lblFrequency, &form.lblFrequencyExpand, &form.lblMode, &form.lblTRXMode}) {
    EXPECT_TRUE(label->stale);
  }
  EXPECT_EQ(form.lblFrequency.toolTip.Get(),
            "Transceiver Frequency. Click to set TRX. RIG STATUS: Port is not available");
  dialogForm.cmdStartStop.Click();
  EXPECT_EQ(Frequency() + form.lblMode.caption.Get(), "RigOffLineN/A");
  EXPECT_EQ(form.Window.caption.Get(), "VELT-SA");
  EXPECT_EQ(dialogForm.Label8.caption.Get(), "");
  form.mnuRig.Click();
  EXPECT_FALSE(form.mnuSetFreqManual.enabled);
}

TEST_F(OmniRigTest, ABadAddressKeepsTheGoodOneAndTheDialog) {
  rig.dialog.Open();
  dialogForm.txtAddress1.UserText(" radio.local:4532 ");
  dialogForm.txtAddress2.UserText("nonsense");
  dialogForm.Command1.Click();
  EXPECT_EQ(server.Address(1) + " " + server.Address(2), "radio.local:4532 127.0.0.1:4534");
  EXPECT_EQ(dialogForm.lblAddressMessage.caption.Get(),
            "Rig 2: \"nonsense\" is no address. Use HOST:PORT, for example 127.0.0.1:4532");
  EXPECT_TRUE(dialogForm.Window.visible);
  dialogForm.txtAddress2.UserText("10.0.0.2:4534");
  EXPECT_EQ(dialogForm.lblAddressMessage.caption.Get(), "");
}

}  // namespace
}  // namespace velt

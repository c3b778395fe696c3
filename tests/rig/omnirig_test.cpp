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
  scheduler.RunPosted();
  EXPECT_EQ(prompts.told.at(0).text, "OmniRig is not installed or has a wrong version number");
  rig2.ComeBack();  // not the one to start with
  scheduler.RunPosted();
  EXPECT_FALSE(rig.current.Exists());
  rig1.ComeBack();
  scheduler.RunPosted();
  // What the stopped start would have gone on with is not done by a later one.
  EXPECT_EQ(answers, Texts{"off line"});
  EXPECT_EQ(Frequency(), "7.100.00");
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
  EXPECT_TRUE(form.lblFrequency.stale && form.lblFrequencyExpand.stale && form.lblTRXMode.stale);
  dialogForm.cmdStartStop.Click();
  EXPECT_EQ(Frequency() + form.lblMode.caption.Get(), "RigOffLineN/A");
  EXPECT_EQ(form.Window.caption.Get() + dialogForm.Label8.caption.Get(), "VELT-SA");
}

}  // namespace
}  // namespace velt

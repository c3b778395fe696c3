// The link to the rigs, and what a user reads of it in the main window at all times.
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

struct LinkWordsTest : RigFixture {
  void ExpectShown(const std::string& text, LampColour colour, const char* told = "") {
    EXPECT_EQ(form.lblLink.caption.Get(), text);
    EXPECT_EQ(form.lampLink.colour, colour) << text;
    EXPECT_NE(form.lblLink.toolTip.Get().find(told), std::string::npos) << told;
  }
  void Key() {
    Link();
    form.mnuPTT_ON.Click();
    Pass(std::chrono::seconds(1));
  }
};

TEST_F(LinkWordsTest, TheMainWindowTellsTheLinkAtAllTimes) {
  ExpectShown("stopped", LampColour::Grey);
  Link();
  ExpectShown("linked", LampColour::Green);
  rig1.Vanish();
  scheduler.RunPosted();
  Pass(std::chrono::seconds(2));
  ExpectShown("reconnecting in 3 s", LampColour::Amber, "Connection refused: is rigctld running?");
  rig.link.StopOmniRig();
  ExpectShown("stopped", LampColour::Grey);
  rig.dialog.Open();
  dialogForm.txtAddress1.UserText("10.0.0.2:4600");
  EXPECT_TRUE(dialogForm.lblCommand.caption.Get().ends_with(" -t 4600"));
  dialogForm.cmdApplyAddresses.Click();
  ExpectShown("stopped", LampColour::Grey, "Rig 1 at 10.0.0.2:4600");
}

// The notice stays until somebody has seen the transmitter receive.
TEST_F(LinkWordsTest, ALinkLostWhileKeyedStaysToldWhenTheLinkIsStopped) {
  using enum GuardianNews::Kind;
  for (const auto& [news, notice] : {std::pair{FollowUpDone, "The sound was lost"},
                                     {FollowUpFailed, TransmitGuard::kMayStillBeOn}}) {
    Key();
    program->notices.Raise(NoticeKind::Sound, "The sound was lost");
    rig1.Vanish();
    scheduler.RunPosted();
    guardian.followed = 0;
    rig.link.StopOmniRig();
    EXPECT_EQ(Notice(), TransmitGuard::kLostWhileKeyed);
    EXPECT_TRUE(form.lblNotice.urgent && guardian.followed == 1U);
    guardian.told.Raise({.kind = news, .ticket = guardian.last});
    EXPECT_EQ(Notice(), notice);
    EXPECT_EQ(form.lblNotice.urgent, news == FollowUpFailed);
    rig1.Key(false);
    rig1.ComeBack();
    form.lblNotice.Click();
  }
  // Also when nobody follows it up.
  Key();
  rig1.IgnoreReleases(true);
  guardian.held.clear();
  guardian.told.Raise({.kind = GuardianNews::Kind::ReleasedInSilence});
  rig.link.StopOmniRig();
  EXPECT_EQ(Notice(), TransmitGuard::kMayStillBeOn);
}

}  // namespace
}  // namespace velt

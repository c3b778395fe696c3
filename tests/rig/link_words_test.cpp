// What a user reads of the link in the main window at all times.
#include "rig_fixture.h"

namespace velt {
namespace {

struct LinkWordsTest : RigFixture {
  void ExpectShown(const std::string& text, LampColour colour) {
    EXPECT_EQ(form.lblLink.caption.Get(), text);
    EXPECT_EQ(form.lampLink.colour, colour) << text;
  }
  bool Told(const char* text) const {
    return form.lblLink.toolTip.Get().find(text) != std::string::npos;
  }
};

TEST_F(LinkWordsTest, TheMainWindowTellsTheLinkAtAllTimes) {
  ExpectShown("stopped", LampColour::Grey);
  Link();
  ExpectShown("linked", LampColour::Green);
  rig1.Vanish();
  scheduler.RunPosted();
  Pass(std::chrono::seconds(2));
  ExpectShown("reconnecting in 3 s", LampColour::Amber);
  EXPECT_TRUE(Told("127.0.0.1:4532") && Told("Connection refused: is rigctld running?"));
  rig.link.StopOmniRig();
  ExpectShown("stopped", LampColour::Grey);
  rig.dialog.Open();
  dialogForm.txtAddress1.UserText("10.0.0.2:4600");
  EXPECT_TRUE(dialogForm.lblCommand.caption.Get().ends_with(" -t 4600"));
  dialogForm.cmdApplyAddresses.Click();
  EXPECT_TRUE(Told("Rig 1 at 10.0.0.2:4600"));
}

TEST_F(LinkWordsTest, TheFrequencyBoxOpensWithWhatIsShownAndLeavesItSo) {
  Link();
  rig1.Tune(75500);  // below 100 kHz a plain number with a fraction would be read as MHz
  scheduler.RunPosted();
  form.mnuSetFreqManual.Click();
  EXPECT_EQ(prompts.inputAsked.initial, ".75.50");
  EXPECT_EQ(WritesAfter([this] { prompts.input(prompts.inputAsked.initial); }),
            Texts{"Freq 75500"});
}

// The notice stays until somebody has seen the transmitter receive.
TEST_F(LinkWordsTest, ALinkLostWhileKeyedStaysToldWhenTheLinkIsStopped) {
  using enum GuardianNews::Kind;
  for (const auto& [news, notice] : {std::pair{FollowUpDone, "The sound was lost"},
                                     {FollowUpFailed, TransmitGuard::kMayStillBeOn}}) {
    Link();
    form.mnuPTT_ON.Click();
    Pass(std::chrono::seconds(1));
    program->notices.Raise(NoticeKind::Sound, "The sound was lost");
    rig1.Vanish();
    scheduler.RunPosted();
    guardian.followed = 0;
    rig.link.StopOmniRig();
    EXPECT_EQ(form.lblNotice.caption.Get(), TransmitGuard::kLostWhileKeyed);
    EXPECT_TRUE(form.lblNotice.urgent);
    EXPECT_EQ(guardian.followed, 1U);
    guardian.told.Raise({.kind = news, .ticket = guardian.last});
    EXPECT_EQ(form.lblNotice.caption.Get(), notice);
    EXPECT_EQ(form.lblNotice.urgent, news == FollowUpFailed);
    rig1.Key(false);
    rig1.ComeBack();
    form.lblNotice.Click();
  }
}

TEST_F(LinkWordsTest, ATransmitterThatNobodyFollowsUpIsTold) {
  Link();
  form.mnuPTT_ON.Click();
  Pass(std::chrono::seconds(1));
  rig1.IgnoreReleases(true);
  guardian.held.clear();
  guardian.told.Raise({.kind = GuardianNews::Kind::ReleasedInSilence});
  rig.link.StopOmniRig();
  EXPECT_EQ(form.lblNotice.caption.Get(), TransmitGuard::kMayStillBeOn);
}

}  // namespace
}  // namespace velt

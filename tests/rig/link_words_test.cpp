// What a user reads of the link: in the main window at all times, in the dialog in full.
#include "rig/link_words.h"

#include "rig_fixture.h"

namespace velt {
namespace {

using std::chrono::seconds;

TEST(LinkWords, ACommandIsOfferedForTheTypedPort) {
  for (const auto& [address, port] : {std::pair{"127.0.0.1:4532", " -t 4532"},
                                      {"[::1]:4534 ", " -t 4534"},
                                      {"shack:65536", ""},
                                      {"shack:", ""},
                                      {"shack", ""},
                                      {"shack:0", ""}}) {
    EXPECT_TRUE(ServerCommand(address).ends_with(port)) << address;
    EXPECT_EQ(ServerCommand(address).empty(), std::string(port).empty()) << address;
  }
}

struct LinkWordsTest : RigFixture {
  std::string Shown() const { return form.lblLink.caption; }
  std::string Notice() const {
    return form.lblNotice.visible ? form.lblNotice.caption.Get() : std::string();
  }
  bool Lit(LampColour colour) const { return form.lampLink.colour == colour; }
  bool Told(const std::string& text) const {
    return form.lblLink.toolTip.Get().find(text) != std::string::npos;
  }
};

TEST_F(LinkWordsTest, TheMainWindowTellsTheLinkAtAllTimes) {
  EXPECT_EQ(Shown(), "stopped");
  EXPECT_TRUE(Lit(LampColour::Grey));
  rig.link.StartOmniRig({});
  EXPECT_EQ(Shown(), "connecting");
  scheduler.RunPosted();
  EXPECT_EQ(Shown(), "linked");
  EXPECT_TRUE(Lit(LampColour::Green));
  rig1.Vanish();
  scheduler.RunPosted();
  EXPECT_EQ(Shown(), "reconnecting in 5 s");
  EXPECT_TRUE(Lit(LampColour::Amber));
  EXPECT_TRUE(Told("127.0.0.1:4532") && Told("Connection refused: is rigctld running?"));
  Pass(seconds(2));
  EXPECT_EQ(Shown(), "reconnecting in 3 s");
  rig.dialog.Option_Click(2);
  scheduler.RunPosted();
  EXPECT_EQ(Shown(), "linked");
  EXPECT_TRUE(Told("Rig 2 at 127.0.0.1:4534"));
  rig2.BeSilent(true);
  scheduler.RunPosted();
  EXPECT_EQ(Shown(), "rig is silent");
  rig.link.StopOmniRig();
  EXPECT_EQ(Shown(), "stopped");
  EXPECT_TRUE(Lit(LampColour::Grey) && !Told("refused"));
  rig.dialog.Open();
  dialogForm.txtAddress2.UserText("10.0.0.2:4600");
  dialogForm.cmdApplyAddresses.Click();
  EXPECT_TRUE(Told("Rig 2 at 10.0.0.2:4600"));
}

TEST_F(LinkWordsTest, TheFrequencyBoxOpensWithWhatIsShownAndLeavesItSo) {
  form.mnuSetFreqManual.Click();
  EXPECT_EQ(prompts.inputAsked.initial, "");
  Link();
  rig1.Tune(75500);  // below 100 kHz a plain number with a fraction would be read as MHz
  scheduler.RunPosted();
  form.mnuSetFreqManual.Click();
  EXPECT_EQ(prompts.inputAsked.initial, ".75.50");
  EXPECT_FALSE(prompts.inputAsked.example.empty());
  EXPECT_EQ(WritesAfter([this] { prompts.input(prompts.inputAsked.initial); }),
            Texts{"Freq 75500"});
}

TEST_F(LinkWordsTest, TheDialogNamesCauseAndRemedyAndKeepsTheLastValues) {
  Link();
  rig.dialog.Open();
  scheduler.RunPosted();
  EXPECT_EQ(dialogForm.Combo1.inForce, 0);  // LSB
  rig1.Select(PM_CW_L);
  scheduler.RunPosted();
  EXPECT_EQ(dialogForm.Combo1.inForce, 2);
  EXPECT_EQ(WritesAfter([this] { dialogForm.Combo1.UserPick(2); }),
            Texts{"Mode " + std::to_string(PM_CW_U)});  // the one in force can be chosen, too
  EXPECT_EQ(dialogForm.lblCause.caption.Get(), "");
  EXPECT_EQ(dialogForm.frmReport.caption.Get(), "Transceiver");
  rig1.Vanish();
  scheduler.RunPosted();
  EXPECT_EQ(dialogForm.lblCause.caption.Get(), "Connection refused: is rigctld running?");
  EXPECT_EQ(dialogForm.Combo1.inForce, -1);
  for (int stopped = 0; stopped < 2; ++stopped) {
    EXPECT_EQ(dialogForm.frmReport.caption.Get(), "Transceiver (last known values)") << stopped;
    EXPECT_EQ(dialogForm.Label3.caption.Get(), "7100000") << stopped;
    dialogForm.cmdStartStop.Click();
  }
  dialogForm.txtAddress1.UserText("10.0.0.1:4600");
  EXPECT_TRUE(dialogForm.lblCommand.caption.Get().ends_with(" -t 4600"));
  dialogForm.txtAddress1.UserText("10.0.0.1");
  EXPECT_FALSE(dialogForm.cmdCopyCommand.enabled);
}

struct SimulatedLink : RigFixture {
  // As in a demonstration: there is nothing to connect to.
  SimulatedRigServer demo{scheduler};
};

TEST_F(SimulatedLink, ASimulatedRigSaysSo) {
  EXPECT_EQ(ShortLinkText(RigLink{.state = RigLink::State::Linked}, true), "simulated rig");
  OmniRigForm own;
  OmniRigDialog dialog({.form = own,
                        .server = demo,
                        .link = rig.link,
                        .display = rig.display,
                        .ptt = rig.ptt,
                        .rig = rig.current,
                        .engine = rig.engine,
                        .guard = rig.guard,
                        .state = rig.state,
                        .onTop = program->onTop,
                        .prompts = prompts,
                        .scheduler = scheduler});
  dialog.Open();
  EXPECT_TRUE(own.lblLink.caption.Get().ends_with(" (simulated rig)"));
  EXPECT_FALSE(own.lampLink.toolTip.Get().empty());
  EXPECT_EQ(own.lblCommand.caption.Get(), "");
}

// Whoever follows it up, the notice stays until somebody has seen the transmitter receive.
TEST_F(LinkWordsTest, ALinkLostWhileKeyedStaysToldWhenTheLinkIsStopped) {
  for (const auto kind : {GuardianNews::Kind::FollowUpDone, GuardianNews::Kind::FollowUpFailed}) {
    const bool done = kind == GuardianNews::Kind::FollowUpDone;
    Link();
    form.mnuPTT_ON.Click();
    Pass(seconds(1));
    program->notices.Raise(NoticeKind::Sound, "The sound was lost");
    EXPECT_FALSE(form.lblNotice.urgent);
    rig1.Vanish();
    scheduler.RunPosted();
    EXPECT_EQ(Notice(), TransmitGuard::kLostWhileKeyed);
    EXPECT_TRUE(form.lblNotice.urgent);
    guardian.followed = 0;
    rig.link.StopOmniRig();
    EXPECT_EQ(Notice(), TransmitGuard::kLostWhileKeyed);
    EXPECT_EQ(guardian.followed, 1U);
    guardian.told.Raise({.kind = kind, .ticket = guardian.last});
    EXPECT_EQ(Notice(), done ? "The sound was lost" : TransmitGuard::kMayStillBeOn);
    EXPECT_EQ(form.lblNotice.urgent, !done);
    rig1.Key(false);
    rig1.ComeBack();
    form.lblNotice.Click();
  }
}

TEST_F(LinkWordsTest, ATransmitterThatNobodyFollowsUpIsTold) {
  Link();
  form.mnuPTT_ON.Click();
  Pass(seconds(1));
  rig1.IgnoreReleases(true);
  guardian.held.clear();
  guardian.told.Raise({.kind = GuardianNews::Kind::ReleasedInSilence});
  rig.link.StopOmniRig();
  EXPECT_EQ(Notice(), TransmitGuard::kMayStillBeOn);
}

}  // namespace
}  // namespace velt

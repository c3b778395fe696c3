#include "rig_fixture.h"

namespace velt {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

// Rig 1 stands on 7.1 MHz and is shown shifted, on 7.102.
struct TransmitTest : RigFixture {
  TransmitTest() {
    Link();
    Shift(2);
  }
  void Shift(int16_t offsetKHz) {
    rig.state.offsetKHz = offsetKHz;
    rig.display.ShowRigParams();
  }
  void On() { form.mnuPTT_ON.Click(); }
  void Off() { form.mnuPTT_OFF.Click(); }
  bool Transmits() const { return rig1.Transmits(); }
  // What a transmission has brought about and not put back.
  std::string Left() {
    std::string left = Notice();
    if (Transmits()) left += " keyed";
    if (form.optTXRX[0].value || !form.optTXRX[1].value) left += " shows TX";
    if (sleepLock.held) left += " awake";
    if (!guardian.held.empty()) left += " guarded";
    if (rig1.Freq() != 7100000) left += " moved";
    return left;
  }
};

TEST_F(TransmitTest, KeyingMovesToTheShownFrequencyAndBackAfterTheRelease) {
  EXPECT_EQ(WritesAfter([this] { On(); }), (Texts{"TX", "Freq 7102000"}));
  EXPECT_EQ(Left(), " keyed shows TX awake guarded moved");
  Pass(Milliseconds(300));
  EXPECT_EQ(form.lblTRXMode.caption.Get(), "TX");
  EXPECT_EQ(WritesAfter([this] { Off(); }), Texts{"RX"});
  EXPECT_EQ(WritesWithin(Milliseconds(1099)), Texts{});
  EXPECT_EQ(WritesWithin(Milliseconds(1)), Texts{"Freq 7100000"});
  EXPECT_EQ(Frequency(), "7.102.00");
  Pass(seconds(1));
  EXPECT_EQ(Left(), "");
  EXPECT_GT(guardian.beats, 3);
  // Without a shift in force receive moves nothing.
  rig1.Tune(3600000);
  EXPECT_EQ(WritesAfter([this] { Off(); }), Texts{"RX"});
  EXPECT_EQ(WritesWithin(seconds(3)), Texts{});
  rig.link.SelectRig(2);
  scheduler.RunPosted();
  On();
  EXPECT_TRUE(rig2.Transmits());
  Off();
  EXPECT_FALSE(rig2.Transmits());
}

TEST_F(TransmitTest, HoweverOftenItIsPressedTheRigTransmitsAndReceivesWhereItShould) {
  for (const std::vector<int>& buttons :
       {std::vector{0, 1, 0, 1}, {0, 0, 1}, {0, 1, 1}, {0, 1, 0, 1, 0, 0, 1}}) {
    for (const int button : buttons) {
      form.optTXRX[button].UserPress(1);
      Pass(Milliseconds(600));
      EXPECT_TRUE(button == 1 || rig1.Freq() == 7102000) << buttons.size();
    }
    Pass(seconds(2));
    EXPECT_EQ(Left(), "") << buttons.size();
  }
}

// Between the release and the move back; what is then transmitted on is as far away as before.
TEST_F(TransmitTest, TuningRightAfterTransmittingHolds) {
  using Way = std::function<void()>;
  for (const auto& [tune, hertz] :
       {std::pair{Way([this] { rig.control.Step(500); }), 7100500},
        {Way([this] { rig.control.SetTRXFrequency(3602000); }), 3600000},
        {Way([this] { rig1.Tune(3600000); }), 3600000}}) {
    On();
    Off();
    Pass(Milliseconds(100));
    tune();
    Pass(Milliseconds(100));
    On();
    EXPECT_EQ(rig1.Freq(), hertz + 2000);
    Off();
    Pass(seconds(3));
    EXPECT_EQ(rig1.Freq(), hertz);
    On();
    Off();
    rig.control.TuneTo(7100000);
    Pass(seconds(3));
    EXPECT_EQ(rig1.Freq(), 7100000);
  }
}

// Whatever ends the use of the server that keyed: it is released there, the guardian follows it up,
// it is moved back although it may be seen to receive, and nothing is sent to what comes after it.
TEST_F(TransmitTest, LeavingWhatWasKeyedReleasesItThereAndNowhereElse) {
  int port = 4000;
  const auto moveServer = [&] {
    rig.dialog.Open();
    dialogForm.txtAddress1.UserText("10.0.0.7:" + std::to_string(++port));
    dialogForm.Command1.Click();
  };
  using Way = std::function<void()>;
  const Way choose = [this] { rig.link.SelectRig(2); };
  const Way stop = [this] { dialogForm.cmdStartStop.Click(); };
  for (const auto& [leave, received] :
       {std::pair{choose, false}, {stop, false}, {Way(moveServer), false}, {moveServer, true}}) {
    rig.link.StopOmniRig();
    Link();
    rig.state.vfo = 1;
    Shift(2);
    On();
    Pass(seconds(1));
    rig.state.vfo = 2;
    rig.state.offsetKHz = 0;
    guardian.followed = 0;
    if (received) {
      Off();
      Pass(Milliseconds(1070));
      rig1.TuneB(3600000);  // so that it is looked at
      Pass(Milliseconds(10));
      EXPECT_FALSE(sleepLock.held);
    }
    EXPECT_EQ(WritesAfter(leave),
              received ? Texts{"FreqA 7100000"} : (Texts{"RX", "FreqA 7100000"}));
    EXPECT_EQ(guardian.followed, received ? 0U : 1U);
    EXPECT_EQ(Left(), "");
    rig1.Key(true);  // a stranger
    EXPECT_EQ(WritesWithin(seconds(15)), Texts{});
    rig1.Key(false);
  }
  EXPECT_EQ(writes2.Take(), Texts{});
}

TEST_F(TransmitTest, WhatWasNotKeyedHereIsReleasedByTheOperatorOnly) {
  for (const Milliseconds span : {Milliseconds(100), Milliseconds(10000)}) {
    On();
    Pass(span);
    rig1.Key(false);  // ended at the rig itself: the next transmission is somebody else's
    Pass(seconds(5));
    rig1.Key(true);
    Pass(seconds(2));
    EXPECT_EQ(WritesWithin(minutes(11)), Texts{});
  }
  rig.ptt.PTT_OFF(TransmitOwner::Engine);
  rig.ptt.PTT_OFF(TransmitOwner::Player);
  rig1.Vanish();
  Pass(seconds(15));
  On();
  EXPECT_FALSE(form.optTXRX[0].value);
  Off();  // it may be another transmission by the time the link is back
  rig1.ComeBack();
  Pass(seconds(20));
  EXPECT_EQ(writes1.Take(), Texts{});
  EXPECT_EQ(WritesAfter([this] { Off(); }), Texts{"RX"});
  EXPECT_FALSE(Transmits());
}

// A server that had stopped answering carries the key out long after the release.
TEST_F(TransmitTest, AKeyThatWasNotAnsweredIsReleasedHoweverLateItComes) {
  for (const int late : {3, 9, 12}) {
    On();
    rig1.Key(false);  // nothing of it has arrived yet
    scheduler.RunPosted();
    rig1.Vanish();
    Pass(seconds(1));
    rig1.ComeBack();
    Pass(seconds(late - 1));
    EXPECT_EQ(sleepLock.held, late < 10) << "it is watched";
    rig1.Key(true);
    Pass(seconds(2));
    EXPECT_EQ(Transmits(), late > 10) << "by then it is somebody else's";
    rig1.Key(false);
    Pass(seconds(12));
    EXPECT_EQ(Left(), "");
  }
}

TEST_F(TransmitTest, OwnersEndTheirOwnWishAndTheOperatorEndsAll) {
  using enum TransmitOwner;
  for (const auto& [first, other, ends] : {std::tuple{Operator, Engine, Operator},
                                           {Player, Engine, Operator},
                                           {Engine, Player, Engine}}) {
    for (const TransmitOwner owner : {first, other}) rig.ptt.PTT_ON(owner);
    rig.ptt.PTT_OFF(other);
    EXPECT_TRUE(Transmits() && form.optTXRX[0].value);
    rig.ptt.PTT_OFF(ends);
    EXPECT_FALSE(Transmits() || form.optTXRX[0].value);
  }
  Pass(seconds(5));
  EXPECT_EQ(Left(), "");
}

// The link goes away after any number of checks, some of them spent with a release that the rig
// ignores, for a moment up to minutes.
TEST_F(TransmitTest, ALinkLostAtAnyMomentNeverLeavesARigKeyed) {
  for (int checks = 0; checks <= 45; ++checks) {
    for (const int away : {1, 5, 30, 900}) {
      for (const bool releasing : {false, true}) {
        On();
        Pass(Milliseconds(250));
        rig1.IgnoreReleases(releasing);
        if (releasing) Off();
        Pass(Milliseconds(250) * checks);
        rig1.Vanish();
        Pass(Milliseconds(500));
        EXPECT_FALSE(Notice().empty());  // at once
        Pass(seconds(away));
        EXPECT_TRUE(Transmits() && form.optTXRX[1].value && !Notice().empty());
        rig1.IgnoreReleases(false);
        EXPECT_EQ(WritesAfter([this] { rig1.ComeBack(); }).at(0), "RX");
        ASSERT_FALSE(Transmits()) << checks << " checks, away " << away << ' ' << releasing;
        Pass(seconds(5));
        EXPECT_EQ(Left(), "");
      }
    }
  }
}

TEST_F(TransmitTest, AfterALostLinkATunedRigStaysWhereItIs) {
  for (const bool byHand : {true, false}) {
    rig1.Tune(7100000);
    rig.display.ShowRigParams();
    On();
    Pass(seconds(1));
    rig1.Vanish();
    Pass(seconds(5));
    if (byHand) rig1.Tune(3600000);
    rig1.ComeBack();
    if (!byHand) rig.control.SetTRXFrequency(3602000);
    Pass(seconds(5));
    EXPECT_EQ(rig1.Freq(), 3600000) << byHand;
  }
}

TEST_F(TransmitTest, TheLimitEndsATransmissionAsTheReceiveButtonWould) {
  int held = 10;
  for (const char* typed : {"0", "1", "60", "61", "", "5.5", " 7 "}) {
    SCOPED_TRACE(typed);
    dialogForm.txtLimit.UserText(typed);
    if (dialogForm.lblLimitMessage.caption.Get().empty()) held = std::atoi(typed);
    const seconds asleep(held % 2 * 30);  // counts too
    On();
    Pass(minutes(held) - Milliseconds(500) - asleep);
    clock.slept += asleep;
    EXPECT_TRUE(Transmits());
    On();  // keying what is keyed does not lengthen it
    Pass(seconds(3));
    EXPECT_EQ(Left(),
              "Transmission ended: it reached the limit of " + std::to_string(held) + " min");
    form.lblNotice.Click();
  }
  EXPECT_EQ(held, 7) << "the last that was a limit";
}

// The rig takes commands and ignores them, or its server cannot reach it: the release goes out
// again and again for ten seconds, and then the user is told.
TEST_F(TransmitTest, AReleaseWithoutEffectIsRepeatedForTenSecondsAndThenTold) {
  for (const bool silent : {false, true}) {
    On();
    Pass(seconds(1));
    rig1.BeSilent(silent);
    rig1.IgnoreReleases(true);
    Off();
    Pass(Milliseconds(500));
    EXPECT_GE(std::ranges::count(WritesWithin(seconds(9)), "RX"), 15) << silent;
    Pass(seconds(1));
    EXPECT_EQ(WritesWithin(minutes(1)), Texts{});
    EXPECT_FALSE(Notice().empty());
    rig1.IgnoreReleases(false);
    rig1.Key(false);
    rig1.BeSilent(false);
    Pass(seconds(2));
    EXPECT_EQ(Left(), "");
  }
}

TEST_F(TransmitTest, NobodyTransmitsOnAFrequencyThatIsNotTheOneShown) {
  rig1.RefuseWrites(true);
  for (const TransmitOwner owner : {TransmitOwner::Operator, TransmitOwner::Player}) {
    rig.ptt.PTT_ON(owner);
    Pass(Milliseconds(10));
    EXPECT_FALSE(Transmits() || form.optTXRX[0].value);
    EXPECT_EQ(Notice(), "Transmission ended: the rig did not go to 7.102.00");
    Pass(seconds(5));
    EXPECT_FALSE(rig.guard.Wanted());
    form.lblNotice.Click();
    EXPECT_EQ(Left(), "");
    EXPECT_EQ(Frequency(), "7.102.00");
  }
}

// A transmission that ends by itself, or never begins, shows receive at once and says why.
TEST_F(TransmitTest, WhatEndsATransmissionIsTold) {
  const std::string refusal = "The rig refused to transmit";
  const std::string silence = "Transmission ended: the program had stood still";
  const std::string sleep = "Transmission ended: the computer goes to sleep";
  for (const std::string& told : {refusal, silence, sleep}) {
    rig1.RefuseKeys(told == refusal);
    On();
    EXPECT_EQ(rig1.Freq(), 7102000);
    if (told == silence) {
      guardian.held.clear();  // what it released it forgets
      guardian.told.Raise({.kind = GuardianNews::Kind::ReleasedInSilence});
    }
    if (told == sleep) sleepLock.goingToSleep.Raise();
    Pass(Milliseconds(10));
    EXPECT_EQ(Message(), told);
    EXPECT_FALSE(Transmits() || form.optTXRX[0].value);
    Pass(seconds(3));
    form.lblNotice.Click();
    EXPECT_EQ(WritesWithin(seconds(15)), Texts{});
    EXPECT_EQ(Left(), "");
  }
  guardian.told.Raise({.kind = GuardianNews::Kind::FollowUpFailed});
  EXPECT_EQ(Notice(), TransmitGuard::kMayStillBeOn);
  guardian.present = false;
  EXPECT_EQ(WritesAfter([this] { On(); }), Texts{});
  EXPECT_EQ(Message(), "Not keyed: nothing would release the transmitter after a crash");
}

}  // namespace
}  // namespace velt

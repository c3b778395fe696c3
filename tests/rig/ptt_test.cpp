#include "rig_fixture.h"

namespace velt {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

struct PttTest : RigFixture {
  PttTest() {
    Link();
    rig.state.offsetKHz = 2;
    rig.display.ShowRigParams();  // 7.102.00
  }
  void On() { form.mnuPTT_ON.Click(); }
  void Off() { form.mnuPTT_OFF.Click(); }
  bool Transmits() const { return rig1.txReally == PM_TX; }
};

TEST_F(PttTest, KeyingMovesToTheShownFrequencyAndBackAfterTheRelease) {
  EXPECT_EQ(WritesAfter([this] { On(); }), (Texts{"TX", "Freq 7102000"}));
  EXPECT_TRUE(form.optTXRX[0].value && !form.optTXRX[1].value);
  Pass(Milliseconds(300));
  EXPECT_EQ(form.lblTRXMode.caption.Get(), "TX");
  EXPECT_EQ(WritesAfter([this] { Off(); }), Texts{"RX"});
  EXPECT_TRUE(form.optTXRX[1].value && !form.optTXRX[0].value);
  EXPECT_EQ(WritesAfter([this] { Pass(Milliseconds(1099)); }), Texts{});
  EXPECT_EQ(WritesAfter([this] { Pass(Milliseconds(1)); }), Texts{"Freq 7100000"});
  EXPECT_EQ(Frequency(), "7.102.00");
}

TEST_F(PttTest, HoweverOftenItIsPressedTheRigComesBackToItsOwnFrequency) {
  for (const std::vector<int>& buttons :
       {std::vector{0, 1, 0, 1}, {0, 0, 1}, {0, 1, 1}, {0, 1, 0, 1, 0, 0, 1}}) {
    for (const int button : buttons) {
      form.optTXRX[button].mouseDown.Raise(1);
      Pass(Milliseconds(600));
    }
    Pass(seconds(2));
    EXPECT_EQ(rig1.shown.freq, 7100000) << buttons.size();
    EXPECT_FALSE(Transmits());
  }
}

TEST_F(PttTest, LeavingARigReleasesItAndUndoesTheShiftAsItWasMade) {
  rig.state.vfo = 1;
  On();
  rig.state.vfo = 2;
  rig.state.offsetKHz = 0;
  EXPECT_EQ(WritesAfter([this] { rig.link.SelectRig(2); }), (Texts{"RX", "FreqA 7100000"}));
  Pass(seconds(3));
  EXPECT_EQ(rig2.writes, Texts{});
  EXPECT_FALSE(rig.guard.Holds(1));

  rig.link.SelectRig(1);
  EXPECT_EQ(WritesAfter([this] { On(); }), Texts{"TX"});  // no offset, no shift
  rig.link.StopOmniRig();
  EXPECT_EQ(server.releasedNow, std::vector<int32_t>{1});
  EXPECT_FALSE(Transmits());
}

TEST_F(PttTest, WhatWasNotKeyedHereIsNeverReleased) {
  On();
  Pass(seconds(10));
  rig1.txReally = PM_RX;  // ended at the rig itself: the next transmission is the operator's own
  Pass(seconds(5));
  Off();
  rig1.txReally = PM_TX;
  Pass(seconds(2));
  rig1.TakeWrites();
  Pass(minutes(11));
  server.Lose(1);
  Pass(seconds(15));
  On();
  EXPECT_FALSE(form.optTXRX[0].value);
  Off();
  server.Return(1);
  Pass(seconds(20));
  EXPECT_EQ(rig1.TakeWrites(), Texts{});
}

// The link goes away after any number of checks, some of them spent with a release that the rig
// ignores, for a moment up to minutes.
TEST_F(PttTest, ALinkLostAtAnyMomentNeverLeavesARigKeyed) {
  for (int checks = 0; checks <= 45; ++checks) {
    for (const int away : {1, 5, 30, 900}) {
      for (const bool releasing : {false, true}) {
        On();
        Pass(Milliseconds(250));
        rig1.ignoresRelease = releasing;
        if (releasing) Off();
        Pass(Milliseconds(250) * checks);
        server.Lose(1);
        Pass(seconds(away));
        EXPECT_TRUE(form.optTXRX[1].value);
        EXPECT_TRUE(Transmits());
        EXPECT_TRUE(away < 10 || notices == Texts{PttGuard::kMayStillBeOn}) << away;
        rig1.ignoresRelease = false;
        rig1.TakeWrites();
        server.Return(1);
        Pass(Milliseconds(250));
        ASSERT_FALSE(Transmits()) << checks << " checks, away " << away << ' ' << releasing;
        EXPECT_EQ(rig1.TakeWrites().front(), "RX");
        Pass(seconds(5));
        EXPECT_FALSE(rig.guard.Holds(1));
        EXPECT_EQ(notices, Texts{});
        EXPECT_EQ(rig1.shown.freq, 7100000);
      }
    }
  }
}

TEST_F(PttTest, AfterALostLinkATunedRigStaysWhereItIs) {
  for (const bool byHand : {true, false}) {
    rig1.shown.freq = rig1.shown.rx = 7100000;
    rig.display.ShowRigParams();
    On();
    Pass(seconds(1));
    server.Lose(1);
    Pass(seconds(5));
    if (byHand) rig1.shown.freq = rig1.shown.rx = 3600000;
    server.Return(1);
    if (!byHand) rig.control.SetTRXFrequency(3602000);
    Pass(seconds(5));
    EXPECT_EQ(rig1.shown.freq, 3600000) << byHand;
  }
}

TEST_F(PttTest, TheLimitEndsATransmissionAsTheReceiveButtonWould) {
  for (const auto& [wanted, held] : {std::pair{10, 10}, {2, 2}, {0, 1}, {60, 60}, {61, 60}}) {
    for (const bool tellsTransmit : {true, false}) {
      rig.guard.SetLimitMinutes(wanted);
      On();
      if (tellsTransmit) rig1.Report();
      clock.Advance(minutes(held) - Milliseconds(500));
      EXPECT_TRUE(Transmits()) << wanted;
      On();  // keying what is keyed does not lengthen it
      messages.clear();
      notices.clear();
      Pass(seconds(3));
      EXPECT_FALSE(Transmits()) << wanted;
      const std::string text = "Transmission ended: it reached the limit of ";
      EXPECT_EQ(messages, Texts{text + std::to_string(held) + " min"});
      EXPECT_EQ(notices, messages);
      EXPECT_TRUE(form.optTXRX[1].value);
      EXPECT_EQ(rig1.shown.freq, 7100000);
    }
  }
}

TEST_F(PttTest, AnIgnoredReleaseIsRepeatedForTenSecondsAndThenTold) {
  On();
  rig1.ignoresRelease = true;
  Off();
  clock.Advance(Milliseconds(500));  // the picture still is the one from before the keying
  rig1.TakeWrites();
  Pass(seconds(9));
  EXPECT_GE(std::ranges::count(rig1.writes, "RX"), 15);
  EXPECT_TRUE(notices.empty());
  Pass(seconds(1));
  EXPECT_EQ(notices, Texts{PttGuard::kMayStillBeOn});
  EXPECT_EQ(WritesAfter([this] { Pass(minutes(1)); }), Texts{});
  EXPECT_EQ(notices, Texts{PttGuard::kMayStillBeOn});
  rig1.txReally = PM_RX;
  Pass(seconds(2));
  EXPECT_TRUE(notices.empty());
}

}  // namespace
}  // namespace velt

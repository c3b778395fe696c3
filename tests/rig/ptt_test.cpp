#include "rig_fixture.h"

namespace velt {
namespace {

struct PttTest : RigFixture {
  PttTest() {
    Link();
    rig.state.offsetKHz = 2;
    rig.display.ShowRigParams();  // 7.102.00
  }
  void On() { form.mnuPTT_ON.Click(); }
  void Off() { form.mnuPTT_OFF.Click(); }
};

TEST_F(PttTest, KeyingMovesToTheShownFrequencyAndBackAfterTheRelease) {
  EXPECT_EQ(WritesAfter([this] { On(); }), (Texts{"TX", "Freq 7102000"}));
  EXPECT_TRUE(form.optTXRX[0].value);
  EXPECT_FALSE(form.optTXRX[1].value);
  Pass(Milliseconds(300));
  EXPECT_EQ(form.lblTRXMode.caption.Get(), "TX");
  EXPECT_EQ(WritesAfter([this] { Off(); }), Texts{"RX"});
  EXPECT_TRUE(form.optTXRX[1].value);
  EXPECT_EQ(WritesAfter([this] { Pass(Milliseconds(1099)); }), Texts{});
  EXPECT_EQ(WritesAfter([this] { Pass(Milliseconds(1)); }), Texts{"Freq 7100000"});
  EXPECT_EQ(Frequency(), "7.102.00");
}

TEST_F(PttTest, HoweverOftenItIsPressedTheRigComesBackToItsOwnFrequency) {
  const auto on = [this] { form.optTXRX[0].onMouseDown(1); };
  const auto off = [this] { form.optTXRX[1].onMouseDown(1); };
  using Steps = std::vector<std::function<void()>>;
  for (const Steps& steps : {Steps{on, off, on, off}, Steps{on, on, off}, Steps{on, off, off},
                             Steps{on, off, on, off, on, on, off}}) {
    for (const auto& step : steps) {
      step();
      Pass(Milliseconds(600));
    }
    Pass(Milliseconds(2000));
    EXPECT_EQ(rig1.shown.freq, 7100000) << steps.size();
    EXPECT_EQ(rig1.txReally, PM_RX);
  }
}

TEST_F(PttTest, TheShiftIsUndoneBeforeTheEndAndForTheRigAndVfoItWasMadeOn) {
  On();
  Pass(Milliseconds(500));
  EXPECT_EQ(WritesAfter([this] {
              rig.guard.ReleaseNow();
              rig.control.RestoreNow();
            }),
            (Texts{"RX", "Freq 7100000"}));
  EXPECT_EQ(server.releasedNow, std::vector<int32_t>{1});
  EXPECT_EQ(WritesAfter([this] { rig.control.RestoreNow(); }), Texts{});

  Off();
  Pass(Milliseconds(2000));
  rig.state.vfo = 1;
  On();
  rig.state.vfo = 2;
  On();
  rig.state.offsetKHz = 0;
  EXPECT_EQ(WritesAfter([this] {
              Off();
              Pass(Milliseconds(1100));
            }),
            (Texts{"RX", "FreqA 7100000"}));

  rig.state.vfo = 0;
  rig.state.offsetKHz = 2;
  On();
  EXPECT_EQ(WritesAfter([this] { rig.link.SelectRig(2); }), (Texts{"RX", "Freq 7100000"}));
  Pass(Milliseconds(3000));
  EXPECT_EQ(rig2.writes, Texts{});
  EXPECT_FALSE(rig.guard.Holds(1));
}

TEST_F(PttTest, AShiftOfZeroMovesNothing) {
  rig.state.offsetKHz = 0;
  EXPECT_EQ(WritesAfter([this] { On(); }), Texts{"TX"});
  EXPECT_EQ(WritesAfter([this] {
              Off();
              clock.Advance(Milliseconds(5000));
              rig.control.SetTRXShift(0, true, 3);
              rig.control.SetTRXShift(0, false, 3);
              clock.Advance(Milliseconds(5000));
            }),
            Texts{"RX"});
}

TEST_F(PttTest, WithoutALinkNothingIsKeyedAndNothingForeignReleased) {
  server.Lose(1);
  EXPECT_EQ(WritesAfter([this] {
              On();
              EXPECT_FALSE(form.optTXRX[0].value);
              EXPECT_EQ(messages.size(), 1U);
              Off();
              server.Return(1);
              clock.Advance(Milliseconds(20000));
            }),
            Texts{});
}

TEST_F(PttTest, ALinkLostWhileKeyedIsReleasedFirstAndMovedBackLater) {
  On();
  Pass(Milliseconds(1000));
  server.Lose(1);
  Pass(Milliseconds(3000));
  EXPECT_TRUE(form.optTXRX[1].value);
  EXPECT_TRUE(notices.empty());
  Pass(Milliseconds(8000));
  EXPECT_EQ(notices, Texts{PttGuard::kMayStillBeOn});
  rig1.TakeWrites();
  server.Return(1);
  Pass(Milliseconds(3000));
  const Texts writes = rig1.TakeWrites();
  ASSERT_FALSE(writes.empty());
  EXPECT_EQ(writes.front(), "RX");
  EXPECT_EQ(writes.back(), "Freq 7100000");
  EXPECT_EQ(notices, Texts{});
  EXPECT_FALSE(Transmits());
}

TEST_F(PttTest, AfterALostLinkATunedRigStaysWhereItIs) {
  for (const bool byHand : {true, false}) {
    rig1.shown.freq = rig1.shown.rx = 7100000;
    rig.display.ShowRigParams();
    On();
    Pass(Milliseconds(1000));
    server.Lose(1);
    Pass(Milliseconds(5000));
    if (byHand) rig1.shown.freq = rig1.shown.rx = 3600000;
    server.Return(1);
    clock.RunPosted();
    if (!byHand) rig.control.SetTRXFrequency(3602000);
    Pass(Milliseconds(5000));
    EXPECT_EQ(rig1.shown.freq, 3600000) << byHand;
    On();
    Pass(Milliseconds(1000));
    Off();
    Pass(Milliseconds(2000));
    EXPECT_EQ(rig1.shown.freq, 3600000) << byHand;
  }
}

TEST_F(PttTest, TheLimitEndsATransmissionAsTheReceiveButtonWould) {
  rig.guard.SetLimitMinutes(2);
  On();
  Pass(Milliseconds(119'500));
  EXPECT_TRUE(Transmits());
  messages.clear();
  Pass(Milliseconds(3000));
  EXPECT_FALSE(Transmits());
  EXPECT_EQ(messages, Texts{"Transmission ended: it reached the limit of 2 min"});
  EXPECT_EQ(notices, messages);
  EXPECT_TRUE(form.optTXRX[1].value);
  EXPECT_EQ(form.lblTRXMode.caption.Get(), "RX");
  EXPECT_EQ(rig1.shown.freq, 7100000);
}

TEST_F(PttTest, AnIgnoredReleaseIsRepeatedForTenSecondsAndThenTold) {
  On();
  Pass(Milliseconds(1000));
  rig1.ignoresRelease = true;
  rig1.TakeWrites();
  Off();
  Pass(Milliseconds(9500));
  EXPECT_GE(std::ranges::count(rig1.writes, "RX"), 15);
  EXPECT_TRUE(notices.empty());
  Pass(Milliseconds(1000));
  EXPECT_EQ(notices, Texts{PttGuard::kMayStillBeOn});
  rig1.TakeWrites();
  Pass(Milliseconds(60'000));
  EXPECT_EQ(rig1.writes, Texts{});
  EXPECT_EQ(notices, Texts{PttGuard::kMayStillBeOn});
  rig1.txReally = PM_RX;
  Pass(Milliseconds(2000));
  EXPECT_TRUE(notices.empty());
}

TEST_F(PttTest, StoppingTheLinkReleasesByTheShortestWay) {
  On();
  Pass(Milliseconds(500));
  rig.link.StopOmniRig();
  EXPECT_EQ(server.releasedNow, std::vector<int32_t>{1});
  EXPECT_FALSE(Transmits());
  EXPECT_EQ(rig1.shown.freq, 7100000);
  EXPECT_TRUE(form.lblFrequency.stale);
}

}  // namespace
}  // namespace velt

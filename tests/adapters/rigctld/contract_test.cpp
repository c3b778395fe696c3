// What every CAT port keeps to: the link to real servers and the simulated rigs alike.
#include <gtest/gtest.h>

#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/live_loop.h"
#include "adapters/rigctld/rigctld_server.h"
#include "adapters/simulated_rig/simulated_rig.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

using State = RigLink::State;

// A port with two rigs, and a hand on the first of them.
class Bench {
 public:
  virtual ~Bench() = default;
  virtual IOmniRigX& Port() = 0;
  virtual bool Until(const std::function<bool()>& condition, Milliseconds limit) = 0;
  virtual void Tune(int32_t frequencyHz) = 0;
  virtual bool Transmitting() = 0;
  virtual void Vanish() = 0;
  virtual void ComeBack() = 0;
};

class SimulatedBench : public Bench {
 public:
  IOmniRigX& Port() override { return server_; }
  bool Until(const std::function<bool()>& condition, Milliseconds limit) override {
    for (Milliseconds waited(0); waited <= limit; waited += Milliseconds(5)) {
      if (condition()) return true;
      time_.Advance(Milliseconds(5));
    }
    return condition();
  }
  void Tune(int32_t frequencyHz) override { server_.Rig1().Tune(frequencyHz); }
  bool Transmitting() override { return server_.Rig1().IsTransmitting(); }
  void Vanish() override { server_.Rig1().Vanish(); }
  void ComeBack() override { server_.Rig1().ComeBack(); }

 private:
  VirtualScheduler time_;
  SimulatedRigServer server_{time_};
};

class DummyBench : public Bench {
 public:
  DummyBench() {
    server_.SetAddress(1, rig1_.Address());
    server_.SetAddress(2, rig2_.Address());
    rig1_.Ask("F 14074000");
    rig1_.Ask("M USB 0");
    rig2_.Ask("F 7074000");
    rig2_.Ask("M LSB 0");
  }
  IOmniRigX& Port() override { return server_; }
  bool Until(const std::function<bool()>& condition, Milliseconds limit) override {
    return LoopUntil(condition, limit);
  }
  void Tune(int32_t frequencyHz) override { rig1_.Ask("F " + std::to_string(frequencyHz)); }
  bool Transmitting() override { return rig1_.Ask("t") == "1"; }
  void Vanish() override { rig1_.Kill(); }
  void ComeBack() override { rig1_.Start(); }

 private:
  QtScheduler scheduler_;
  DummyRig rig1_, rig2_;
  RigctldServer server_{scheduler_};
};

template <class T>
class CatPort : public testing::Test {
 public:
  CatPort() {
    port.onStatusChange = [this](int32_t number) {
      EXPECT_FALSE(calling);
      status[number] = true;
    };
    port.onParamsChange = [this](int32_t number, int32_t bits) {
      EXPECT_FALSE(calling);
      params[number] |= bits;
    };
  }

  // A call, during which no event may come.
  template <class F>
  auto Call(F f) {
    calling = true;
    const auto result = f();
    calling = false;
    return result;
  }
  void Open(int32_t number) {
    std::optional<bool> answer;
    Call([&] {
      port.Open(number, [&](bool reached) {
        EXPECT_FALSE(calling);
        answer = reached;
      });
      return 0;
    });
    ASSERT_TRUE(Until([&] { return answer.has_value(); }));
    EXPECT_TRUE(*answer);
    IRigX& opened = number == 1 ? port.Rig1() : port.Rig2();
    ASSERT_TRUE(
        Until([&] { return opened.Freq() > 0 && opened.Mode() != 0 && opened.FreqB() > 0; }));
    params.clear();
  }
  bool Until(const std::function<bool()>& condition, Milliseconds limit = Milliseconds(8000)) {
    return bench.Until(condition, limit);
  }

  T bench;
  IOmniRigX& port = bench.Port();
  IRigX& rig = port.Rig1();
  bool calling = false;
  std::map<int32_t, bool> status;
  std::map<int32_t, int32_t> params;
};

using Benches = testing::Types<SimulatedBench, DummyBench>;
TYPED_TEST_SUITE(CatPort, Benches);

TYPED_TEST(CatPort, OpensAndShowsItsRigs) {
  EXPECT_EQ(this->rig.StatusStr(), "Disabled");
  EXPECT_EQ(this->rig.Link().state, State::Off);
  EXPECT_EQ(this->port.InterfaceVersion(), 0);
  EXPECT_FALSE(this->rig.SetFreq(7000000));
  ASSERT_NO_FATAL_FAILURE(this->Open(1));
  ASSERT_NO_FATAL_FAILURE(this->Open(2));
  EXPECT_GE(this->port.InterfaceVersion(), 0x101);
  EXPECT_LE(this->port.InterfaceVersion(), 0x299);
  EXPECT_EQ(this->rig.StatusStr(), "On-line");
  EXPECT_EQ(this->rig.Freq(), 14074000);
  EXPECT_EQ(this->rig.Mode(), PM_SSB_U);
  EXPECT_EQ(this->port.Rig2().Freq(), 7074000);
  EXPECT_EQ(this->port.Rig2().Mode(), PM_SSB_L);
  EXPECT_EQ(this->rig.Tx(), PM_RX);
  EXPECT_TRUE(this->Until([&] { return !this->rig.RigType().empty(); }));
  EXPECT_EQ(this->port.Address(3), "");
  EXPECT_FALSE(this->port.SetAddress(1, "nonsense"));
}

TYPED_TEST(CatPort, ReadsWhatWasWrittenAndTellsWhoseItIs) {
  ASSERT_NO_FATAL_FAILURE(this->Open(1));
  ASSERT_NO_FATAL_FAILURE(this->Open(2));
  IRigX& second = this->port.Rig2();
  EXPECT_TRUE(this->Call([&] { return second.SetFreqB(7100000) && second.SetFreqA(7200000); }));
  EXPECT_EQ(second.FreqB(), 7100000);
  EXPECT_EQ(second.FreqA(), 7200000);
  EXPECT_EQ(second.Freq(), 7200000);
  EXPECT_EQ(second.GetRxFrequency(), 7200000);
  EXPECT_TRUE(this->Call([&] { return second.SetMode(PM_AM); }));
  EXPECT_EQ(second.Mode(), PM_AM);
  const int32_t expected = PM_FREQ | PM_FREQA | PM_FREQB | PM_AM;
  EXPECT_TRUE(this->Until([&] { return (this->params[2] & expected) == expected; }));
  EXPECT_FALSE(this->Until([&] { return second.FreqB() != 7100000 || second.Freq() != 7200000; },
                           Milliseconds(800)));
  EXPECT_EQ(this->params[1], 0);
  EXPECT_EQ(this->rig.Freq(), 14074000);
  EXPECT_FALSE(this->rig.SetFreq(9999));
  EXPECT_FALSE(this->rig.SetMode(PM_TX));
  EXPECT_FALSE(this->rig.SetTx(0));
}

TYPED_TEST(CatPort, FollowsTheRigWithinHalfASecond) {
  ASSERT_NO_FATAL_FAILURE(this->Open(1));
  this->bench.Tune(3573000);
  EXPECT_TRUE(this->Until([&] { return this->rig.Freq() == 3573000; }, Milliseconds(500)));
  EXPECT_TRUE(this->Until([&] { return (this->params[1] & PM_FREQ) != 0; }));
}

TYPED_TEST(CatPort, TransmitsAsTheRigReports) {
  ASSERT_NO_FATAL_FAILURE(this->Open(1));
  EXPECT_EQ(this->rig.GetTxFrequency(), 0);
  EXPECT_TRUE(this->Call([&] { return this->rig.SetTx(PM_TX); }));
  EXPECT_EQ(this->rig.Tx(), PM_RX) << "not before the rig says so";
  EXPECT_TRUE(this->Until([&] { return this->rig.Tx() == PM_TX; }));
  EXPECT_TRUE(this->bench.Transmitting());
  EXPECT_EQ(this->rig.GetTxFrequency(), 14074000);
  EXPECT_TRUE(this->rig.SetTx(PM_RX));
  EXPECT_TRUE(this->Until([&] { return this->rig.Tx() == PM_RX; }));
  EXPECT_FALSE(this->bench.Transmitting());
  EXPECT_TRUE(this->Until([&] { return this->params[1] & PM_TX && this->params[1] & PM_RX; }));
  EXPECT_EQ(this->rig.GetTxFrequency(), 0);
  ASSERT_TRUE(this->rig.SetTx(PM_TX));
  ASSERT_TRUE(this->Until([&] { return this->rig.Tx() == PM_TX; }));
  this->port.ReleaseNow(1, 500);
  this->port.ReleaseNow(3, 500);
  EXPECT_TRUE(this->Until([&] { return !this->bench.Transmitting(); }));
}

TYPED_TEST(CatPort, ComesBackByItselfAfterItsServerVanished) {
  ASSERT_NO_FATAL_FAILURE(this->Open(1));
  ASSERT_TRUE(this->rig.SetTx(PM_TX));
  ASSERT_TRUE(this->Until([&] { return this->rig.Tx() == PM_TX; }));
  this->status.clear();
  this->bench.Vanish();
  ASSERT_TRUE(this->Until([&] { return this->rig.Link().retryInSeconds > 0; }));
  EXPECT_TRUE(this->rig.Link().stale);
  EXPECT_EQ(this->rig.Link().state, State::Reconnecting);
  EXPECT_EQ(this->rig.Freq(), 14074000) << "the last value";
  EXPECT_TRUE(this->Until([&] { return this->status[1]; }));
  EXPECT_FALSE(this->rig.SetFreq(7000000));
  EXPECT_FALSE(this->rig.SetTx(PM_TX));
  EXPECT_TRUE(this->Call([&] { return this->rig.SetTx(PM_RX); }));
  this->bench.ComeBack();
  ASSERT_TRUE(this->Until([&] { return this->rig.Link().state == State::Linked; }));
  EXPECT_FALSE(this->rig.Link().stale);
  EXPECT_TRUE(this->Until([&] { return this->rig.Tx() == PM_RX; }));
  EXPECT_FALSE(this->bench.Transmitting());
}

TYPED_TEST(CatPort, SaysWhenItCannotBeReachedAndIsQuietOnceClosed) {
  this->bench.Vanish();
  std::optional<bool> answer;
  this->port.Open(1, [&](bool reached) { answer = reached; });
  ASSERT_TRUE(this->Until([&] { return answer.has_value(); }));
  EXPECT_FALSE(*answer);
  EXPECT_EQ(this->rig.StatusStr(), "Port is not available");
  EXPECT_FALSE(this->rig.Link().stale) << "there never was a value";
  this->bench.ComeBack();
  ASSERT_TRUE(this->Until([&] { return this->rig.Link().state == State::Linked; }));
  this->rig.SetFreq(7000000);
  bool dropped = true;
  this->port.Open(2, [&](bool) { dropped = false; });
  this->port.Close();
  this->params.clear();
  this->status.clear();
  EXPECT_FALSE(this->Until([&] { return !dropped; }, Milliseconds(300)));
  EXPECT_TRUE(this->params.empty());
  EXPECT_TRUE(this->status.empty());
  EXPECT_EQ(this->rig.StatusStr(), "Disabled");
  EXPECT_EQ(this->port.InterfaceVersion(), 0);
}

TEST(SimulatedRig, DriftsOnRequest) {
  VirtualScheduler time;
  SimulatedRigServer server(time);
  int events = 0;
  server.onParamsChange = [&](int32_t number, int32_t) { events += number == 2; };
  server.Open(2, {});
  time.Advance(Milliseconds(1));
  events = 0;
  server.Rig2().Drift(-10);
  time.Advance(Milliseconds(3000));
  EXPECT_EQ(server.Rig2().Freq(), 7074000 - 30);
  EXPECT_EQ(events, 15);
  server.Rig2().Drift(0);
  time.Advance(Milliseconds(3000));
  EXPECT_EQ(server.Rig2().Freq(), 7074000 - 30);
}

}  // namespace
}  // namespace velt

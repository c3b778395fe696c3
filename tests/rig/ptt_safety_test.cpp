#include "rig/ptt_safety.h"

#include <gtest/gtest.h>

namespace velt {
namespace {

using Orders = PttSafety::Orders;
using Cause = PttSafety::Cause;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

constexpr Milliseconds kTick{250};

// A rig whose report is a tick late, keyed over a link that may be lost.
struct Simulation {
  PttSafety safety;
  SteadyTime now{hours(1)};
  bool linked = true;
  bool transmits = false;
  bool reported = false;
  bool ignoresRelease = false;
  int releases = 0;
  std::vector<Cause> ended;
  bool alarm = false;

  void Key() {
    transmits = true;
    safety.Keyed(now);
  }
  void Release() {
    if (linked && !ignoresRelease) transmits = false;
    safety.Released(now);
  }
  void Step() {
    now += kTick;
    const Orders orders = safety.Tick(now, {linked, reported});
    if (orders.release) ++releases;
    if (orders.release && linked && !ignoresRelease) transmits = false;
    if (orders.ended != Cause::None) ended.push_back(orders.ended);
    if (orders.raiseAlarm) alarm = true;
    if (orders.endAlarm) alarm = false;
    reported = transmits;
  }
  void Run(Milliseconds span) {
    for (const SteadyTime end = now + span; now < end;) Step();
  }
};

TEST(PttSafety, TheLimitIsNeverBelowOneNorAboveSixtyMinutes) {
  for (const auto& [wanted, held] :
       {std::pair{10, 10}, {0, 1}, {-5, 1}, {1, 1}, {60, 60}, {61, 60}, {INT32_MAX, 60}}) {
    Simulation s;
    s.safety.SetLimitMinutes(wanted);
    EXPECT_EQ(s.safety.LimitMinutes(), held);
    s.Key();
    s.Run(minutes(held) - seconds(1));
    EXPECT_TRUE(s.transmits) << wanted;
    EXPECT_EQ(s.releases, 0);
    s.safety.Keyed(s.now);  // keying what is keyed does not lengthen it
    s.Run(seconds(1));
    EXPECT_FALSE(s.transmits) << wanted;
    EXPECT_EQ(s.ended, std::vector<Cause>{Cause::Limit});
  }
}

// The link goes away after any number of ticks, some of them spent with a release that the rig
// ignores, for a moment up to hours.
TEST(PttSafety, ALinkLostAtAnyMomentNeverLeavesARigKeyed) {
  for (int ticks = 0; ticks <= 2500; ticks += (ticks < 60 ? 1 : 83)) {
    for (const int64_t awayMs : {250, 5000, 30'000, 7'200'000}) {
      for (const bool releasing : {false, true}) {
        Simulation s;
        s.Key();
        s.Step();
        s.ignoresRelease = releasing;
        if (releasing) s.Release();
        s.Run(kTick * ticks);
        const bool wasKeyed = s.transmits;
        s.linked = false;
        s.Run(Milliseconds(awayMs));
        EXPECT_EQ(s.transmits, wasKeyed);
        if (awayMs > 10'000) {
          EXPECT_EQ(s.alarm, wasKeyed) << ticks;
        }
        s.ignoresRelease = false;
        s.linked = true;
        s.Step();
        ASSERT_FALSE(s.transmits) << ticks << " ticks, away " << awayMs << ' ' << releasing;
        s.Run(seconds(5));
        EXPECT_FALSE(s.safety.Holds() || s.alarm);
      }
    }
  }
}

TEST(PttSafety, WhatWasNotKeyedHereIsNeverReleased) {
  Simulation bystander;
  bystander.transmits = true;
  bystander.Release();
  bystander.transmits = true;
  for (int i = 0; i < 100; ++i) {
    bystander.linked = i % 3 != 0;
    bystander.Run(minutes(3));
  }
  EXPECT_EQ(bystander.releases, 0);

  // Ended at the rig itself: the next transmission is the operator's own.
  Simulation operatorTookOver;
  operatorTookOver.Key();
  operatorTookOver.Run(seconds(10));
  operatorTookOver.transmits = false;
  operatorTookOver.Run(seconds(3));
  EXPECT_EQ(operatorTookOver.ended, std::vector<Cause>{Cause::Elsewhere});
  operatorTookOver.transmits = true;
  operatorTookOver.Run(hours(2));
  EXPECT_EQ(operatorTookOver.releases, 0);
}

TEST(PttSafety, ReceiveIsBelievedOnlyAfterAWhile) {
  // A quick release: the picture still is the one from before the keying.
  Simulation quick;
  quick.Key();
  quick.ignoresRelease = true;
  quick.Release();
  quick.reported = false;
  quick.Run(seconds(1));
  EXPECT_TRUE(quick.safety.Holds());
  EXPECT_GE(quick.releases, 1);

  // A rig that cannot tell that it transmits is held until the limit.
  Simulation mute;
  mute.Key();
  for (int i = 0; i < 4 * 599; ++i) {
    mute.reported = false;
    mute.Step();
  }
  EXPECT_TRUE(mute.transmits);
  EXPECT_TRUE(mute.safety.Holds());
  mute.Run(seconds(2));
  EXPECT_FALSE(mute.transmits);
}

}  // namespace
}  // namespace velt

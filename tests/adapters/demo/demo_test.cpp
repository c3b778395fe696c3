#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "adapters/demo/generated_signal.h"
#include "adapters/demo/paced_input.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

using Block = std::array<int16_t, kBlockSamples>;
using Signal = GeneratedSignal;

// How high the display shows a frequency, in pixels, with its usual divisor of 150.
double HeightPx(const Block& block, double frequencyHz) {
  double height = 0;
  const int bin = static_cast<int>(frequencyHz * 1024 / kSampleRateHz);
  for (const int k : {bin, bin + 1}) {
    double real = 0;
    for (size_t n = 0; n < block.size(); ++n) {
      real += block[n] * std::cos(6.283185307179586 * k * static_cast<double>(n) / 1024);
    }
    height += std::sqrt(std::abs(real) / 150);
  }
  return height;
}

TEST(GeneratedSignal, LooksLikeABandOnTheDisplay) {
  struct Case {
    double frequencyHz, top, topLimit;
    int leastPercent, mostPercent;  // of the time that it stands out of the noise
  };
  for (const Case& c : {Case{Signal::kSteady[0].frequencyHz, 28, 60, 90, 100},
                        Case{Signal::kSteady[1].frequencyHz, 60, 90, 90, 100},
                        Case{Signal::kSteady[2].frequencyHz, 28, 60, 90, 100},
                        Case{Signal::kSteady[3].frequencyHz, 28, 60, 90, 100},
                        Case{Signal::kKeyed.frequencyHz, 50, 90, 25, 75},
                        Case{Signal::kDrifting.frequencyHz - Signal::kDriftHz, 40, 90, 5, 60},
                        Case{Signal::kDrifting.frequencyHz + Signal::kDriftHz, 40, 90, 5, 60},
                        Case{20500, 7, 28, 0, 5}}) {
    Signal signal(7);
    double top = 0;
    int shown = 0;
    for (int i = 0; i < 1000; ++i) {
      Block block{};
      signal.Skip(591);
      signal.Read(block);
      for (const int sample : block) ASSERT_LT(std::abs(sample), 32768 / 4);
      const double height = HeightPx(block, c.frequencyHz);
      top = std::max(top, height);
      shown += height > 20 ? 1 : 0;
    }
    EXPECT_GT(top, c.top) << c.frequencyHz;
    EXPECT_LT(top, c.topLimit) << c.frequencyHz;
    EXPECT_GE(shown, c.leastPercent * 10) << c.frequencyHz;
    EXPECT_LE(shown, c.mostPercent * 10) << c.frequencyHz;
  }
}

TEST(GeneratedSignal, SamplesDependOnTheirNumberAndTheSeedOnly) {
  Signal all(3);
  std::vector<int16_t> expected(200000);
  all.Read(expected);
  Signal parts(3);
  Block block{};
  for (int i = 0; i < 50; ++i) {
    parts.Skip(3000);
    parts.Read(block);
    ASSERT_TRUE(std::equal(block.begin(), block.end(), &expected[3000U * (i + 1) + 512U * i]));
  }
  Block other{};
  Signal(4).Read(other);
  EXPECT_FALSE(std::equal(other.begin(), other.end(), expected.begin()));
  // Far on, where sums of floating point would have lost the pitch.
  all.Skip(uint64_t{44100} * 86400 * 365);
  all.Read(block);
  EXPECT_GT(HeightPx(block, Signal::kSteady[1].frequencyHz), 40);
}

// Numbers its samples; fails on demand and tells the longest way that it was made to skip.
struct Counter {
  std::string Open() {
    next = 0;
    return *failing ? "it is gone" : "";
  }
  bool Read(std::span<int16_t> samples) {
    for (int16_t& sample : samples) sample = static_cast<int16_t>(next++ % 30000);
    return !*failing;
  }
  bool Skip(uint64_t count) {
    next += count;
    longestSkip = std::max(longestSkip, count);
    return !*failing;
  }
  std::shared_ptr<bool> failing = std::make_shared<bool>(false);
  uint64_t longestSkip = 0;
  uint64_t next = 0;
};

struct PacedInputTest : testing::Test {
  PacedInputTest() {
    input.onEvent = [this](const AudioEvent& event) { events.push_back(event.kind); };
  }
  TakeResult TakeAfter(Milliseconds passed) {
    scheduler.Advance(passed);
    return input.TakeNewest(block);
  }
  using Kind = AudioEvent::Kind;
  VirtualScheduler scheduler;
  Counter counter;
  PacedInput<Counter> input{counter, {"count", "Counter"}, scheduler};
  std::vector<Kind> events;
  Block block{};
};

TEST_F(PacedInputTest, GivesTheNewestSamplesThatTheClockHasReached) {
  EXPECT_EQ(input.TakeNewest(block), TakeResult::Gone);
  input.Open("");
  EXPECT_TRUE(events.empty());
  EXPECT_EQ(TakeAfter(Milliseconds(5000)), TakeResult::NotYet) << "not started";
  EXPECT_EQ(events, std::vector{Kind::Opened});
  input.Start();
  struct Case {
    int waitMs, last;  // number of the block's last sample, 0 when there is no block yet
  };
  for (const Case& c : {Case{11, 0}, Case{1, 528}, Case{0, 0}, Case{11, 0}, Case{2, 1101},
                        Case{475, 22049}, Case{100, 26459}}) {
    const bool isBlock = TakeAfter(Milliseconds(c.waitMs)) == TakeResult::Block;
    ASSERT_EQ(isBlock, c.last != 0) << c.last;
    EXPECT_TRUE(!isBlock || (block.back() == c.last && block.front() == c.last - 511)) << c.last;
  }
  input.Close();
  EXPECT_EQ(input.TakeNewest(block), TakeResult::Gone);
}

TEST_F(PacedInputTest, KeepsItsPaceAndDoesNotCatchUpAfterALongSleep) {
  input.Open("");
  input.Start();
  for (int i = 0; i < 4000; ++i) ASSERT_EQ(TakeAfter(Milliseconds(25)), TakeResult::Block);
  EXPECT_EQ(block.back(), (44100 * 100 - 1) % 30000);
  EXPECT_LT(input.Samples().longestSkip, 1000U);
  EXPECT_EQ(TakeAfter(std::chrono::hours(24 * 200)), TakeResult::Block);
  EXPECT_LT(input.Samples().longestSkip, 44100U);
  EXPECT_EQ(TakeAfter(Milliseconds(0)), TakeResult::NotYet);
  EXPECT_EQ(TakeAfter(Milliseconds(12)), TakeResult::Block);
}

TEST_F(PacedInputTest, TellsWhenTheSourceCannotBeReadAndWhenItIsBack) {
  *counter.failing = true;
  input.Open("");
  EXPECT_EQ(TakeAfter(Milliseconds(0)), TakeResult::Gone);
  *counter.failing = false;
  input.Open("");
  input.Start();
  scheduler.Advance(Milliseconds(25));
  *counter.failing = true;
  EXPECT_EQ(input.TakeNewest(block), TakeResult::Gone);
  EXPECT_EQ(events, (std::vector{Kind::OpenFailed, Kind::Opened}));
  scheduler.RunPosted();
  input.WatchForReturn();
  scheduler.Advance(Milliseconds(5500));
  EXPECT_EQ(events.size(), 3U);
  *counter.failing = false;
  scheduler.Advance(Milliseconds(1000));
  EXPECT_EQ(events, (std::vector{Kind::OpenFailed, Kind::Opened, Kind::Lost, Kind::Returned}));
  // What was closed meanwhile tells nothing any more.
  input.Open("");
  input.Close();
  input.WatchForReturn();
  input.Close();
  scheduler.Advance(Milliseconds(5000));
  EXPECT_EQ(events.size(), 4U);
}

}  // namespace
}  // namespace velt

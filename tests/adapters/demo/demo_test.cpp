#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <numbers>

#include "adapters/demo/generated_signal.h"
#include "adapters/demo/paced_input.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

using Block = std::array<int16_t, kBlockSamples>;

// How high the display shows a frequency, in pixels, with its usual divisor of 150.
double HeightPx(const Block& block, double frequencyHz) {
  double height = 0;
  const int bin = static_cast<int>(frequencyHz * 1024 / kSampleRateHz);
  for (const int k : {bin, bin + 1}) {
    double real = 0;
    for (size_t n = 0; n < block.size(); ++n) {
      real += block[n] * std::cos(2 * std::numbers::pi * k * static_cast<double>(n) / 1024);
    }
    height += std::sqrt(std::abs(real) / 150);
  }
  return height;
}

TEST(GeneratedSignal, LooksLikeABandOnTheDisplay) {
  GeneratedSignal signal(7);
  std::map<double, double> highest;
  std::map<double, int> shown;  // blocks in which a frequency stands out of the noise
  std::vector<double> floor;
  int loudest = 0;
  std::vector<double> watched = {GeneratedSignal::kKeyed.frequencyHz};
  for (const auto& carrier : GeneratedSignal::kSteady) watched.push_back(carrier.frequencyHz);
  const double drift = GeneratedSignal::kDrifting.frequencyHz;
  watched.insert(watched.end(),
                 {drift - GeneratedSignal::kDriftHz, drift + GeneratedSignal::kDriftHz});
  constexpr int kBlocks = 1000;
  for (int i = 0; i < kBlocks; ++i) {
    signal.Skip(591);
    Block block{};
    signal.Read(block);
    for (const int16_t sample : block) loudest = std::max(loudest, std::abs(sample));
    for (const double frequencyHz : watched) {
      const double height = HeightPx(block, frequencyHz);
      highest[frequencyHz] = std::max(highest[frequencyHz], height);
      shown[frequencyHz] += height > 20 ? 1 : 0;
    }
    floor.push_back(HeightPx(block, 20500 + i % 10 * 43));
  }
  std::sort(floor.begin(), floor.end());
  EXPECT_GT(floor[kBlocks / 2], 5);
  EXPECT_LT(floor[kBlocks / 2], 10);
  EXPECT_LT(loudest, 32768 / 4);
  double top = 0;
  for (const auto& [frequencyHz, height] : highest) {
    EXPECT_GT(height, 28) << frequencyHz;
    top = std::max(top, height);
  }
  EXPECT_GT(top, 60);
  EXPECT_LT(top, 90);
  for (const auto& carrier : GeneratedSignal::kSteady) {
    EXPECT_GT(shown[carrier.frequencyHz], kBlocks * 3 / 4) << carrier.frequencyHz;
  }
  for (const double moving : {watched[0], drift - GeneratedSignal::kDriftHz}) {
    EXPECT_GT(shown[moving], kBlocks / 50) << moving;
    EXPECT_LT(shown[moving], kBlocks * 3 / 4) << moving;
  }
}

TEST(GeneratedSignal, SamplesDependOnTheirNumberAndTheSeedOnly) {
  GeneratedSignal all(3);
  std::vector<int16_t> expected(200000);
  all.Read(expected);
  GeneratedSignal parts(3);
  Block block{};
  for (size_t position = 0; position + 3000 < expected.size(); position += 3000 + kBlockSamples) {
    parts.Skip(3000);
    parts.Read(block);
    if (position + 3000 + kBlockSamples > expected.size()) break;
    ASSERT_TRUE(std::equal(block.begin(), block.end(), expected.begin() + position + 3000));
  }
  parts.Open();
  parts.Read(block);
  EXPECT_TRUE(std::equal(block.begin(), block.end(), expected.begin()));
  Block other{};
  GeneratedSignal(4).Read(other);
  EXPECT_NE(block, other);
  // Far on, where sums of floating point would have lost the pitch.
  all.Skip(uint64_t{44100} * 86400 * 365);
  all.Read(block);
  EXPECT_GT(HeightPx(block, GeneratedSignal::kSteady[1].frequencyHz), 40);
}

// Numbers its samples; fails on demand and remembers the longest way it was made to skip.
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
    *longestSkip = std::max(*longestSkip, count);
    return !*failing;
  }
  std::shared_ptr<bool> failing = std::make_shared<bool>(false);
  std::shared_ptr<uint64_t> longestSkip = std::make_shared<uint64_t>(0);
  uint64_t next = 0;
};

struct PacedInputTest : testing::Test {
  PacedInputTest() {
    input.onEvent = [this](const AudioEvent& event) { events.push_back(event); };
  }
  void OpenAndStart() {
    input.Open("any");
    scheduler.RunPosted();
    input.Start();
  }
  using Kind = AudioEvent::Kind;
  VirtualScheduler scheduler;
  Counter counter;
  PacedInput<Counter> input{counter, {"count", "Counter"}, scheduler};
  std::vector<AudioEvent> events;
  Block block{};
};

TEST_F(PacedInputTest, GivesTheNewestSamplesThatTheClockHasReached) {
  EXPECT_EQ(input.Devices().at(0).name, "count");
  EXPECT_EQ(input.TakeNewest(block), TakeResult::Gone);
  input.Open("");
  EXPECT_TRUE(events.empty());
  scheduler.Advance(Milliseconds(5000));
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].kind, Kind::Opened);
  EXPECT_EQ(input.TakeNewest(block), TakeResult::NotYet);
  input.Start();
  struct Case {
    int waitMs;
    TakeResult result;
    int last;  // number of the block's last sample
  };
  for (const Case& c : {Case{11, TakeResult::NotYet, 0}, Case{1, TakeResult::Block, 528},
                        Case{0, TakeResult::NotYet, 0}, Case{11, TakeResult::NotYet, 0},
                        Case{2, TakeResult::Block, 1101}, Case{475, TakeResult::Block, 22049},
                        Case{100, TakeResult::Block, 26459}}) {
    scheduler.Advance(Milliseconds(c.waitMs));
    ASSERT_EQ(input.TakeNewest(block), c.result) << c.last;
    if (c.result != TakeResult::Block) continue;
    EXPECT_EQ(block.back(), c.last);
    EXPECT_EQ(block.front(), c.last - 511);
  }
  input.Close();
  EXPECT_EQ(input.TakeNewest(block), TakeResult::Gone);
}

TEST_F(PacedInputTest, KeepsItsPaceForDaysAndDoesNotCatchUpAfterASleep) {
  OpenAndStart();
  int64_t blocks = 0;
  for (int i = 0; i < 40 * 100; ++i) {
    scheduler.Advance(Milliseconds(25));
    blocks += input.TakeNewest(block) == TakeResult::Block ? 1 : 0;
  }
  EXPECT_EQ(blocks, 4000);
  EXPECT_EQ(block.back(), (44100 * 100 - 1) % 30000);
  EXPECT_LT(*counter.longestSkip, 1000U);

  scheduler.Advance(std::chrono::hours(24 * 200));
  EXPECT_EQ(input.TakeNewest(block), TakeResult::Block);
  EXPECT_LT(*counter.longestSkip, 44100U);
  EXPECT_EQ(input.TakeNewest(block), TakeResult::NotYet);
  scheduler.Advance(Milliseconds(12));
  EXPECT_EQ(input.TakeNewest(block), TakeResult::Block);
}

TEST_F(PacedInputTest, TellsWhenTheSourceCannotBeReadAndWhenItIsBack) {
  *counter.failing = true;
  input.Open("");
  EXPECT_EQ(input.TakeNewest(block), TakeResult::Gone);
  scheduler.RunPosted();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].kind, Kind::OpenFailed);
  EXPECT_EQ(events[0].text, "it is gone");

  *counter.failing = false;
  OpenAndStart();
  scheduler.Advance(Milliseconds(25));
  *counter.failing = true;
  EXPECT_EQ(input.TakeNewest(block), TakeResult::Gone);
  EXPECT_EQ(events.size(), 2U);
  scheduler.RunPosted();
  EXPECT_EQ(events.at(2).kind, Kind::Lost);
  input.WatchForReturn();
  scheduler.Advance(Milliseconds(5500));
  EXPECT_EQ(events.size(), 3U);
  *counter.failing = false;
  scheduler.Advance(Milliseconds(1000));
  ASSERT_EQ(events.size(), 4U);
  EXPECT_EQ(events[3].kind, Kind::Returned);

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

#include <gtest/gtest.h>

#include "adapters/demo/paced_input.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

// Numbers its samples; fails on demand.
struct Counter {
  bool* failing;
  uint64_t next = 0;
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
    return !*failing;
  }
};

TEST(PacedInput, GivesTheNewestSamplesThatTheClockHasReachedAndTellsALoss) {
  VirtualScheduler scheduler;
  bool failing = true;
  PacedInput<Counter> input({&failing}, {"count", "Counter"}, scheduler);
  using Kind = AudioEvent::Kind;
  std::vector<Kind> told;
  const Connection listening =
      input.happened.Listen([&told](const AudioEvent& event) { told.push_back(event.kind); });
  std::array<int16_t, kBlockSamples> block{};
  const auto takeAfter = [&](int ms) {
    scheduler.Advance(Milliseconds(ms));
    return input.TakeNewest(block);
  };
  input.Open("");
  EXPECT_EQ(takeAfter(0), TakeResult::Gone);
  failing = false;
  input.Open("");
  EXPECT_EQ(takeAfter(5000), TakeResult::NotYet) << "not started";
  input.Start();
  struct Case {
    int waitMs, last;  // number of the block's last sample, 0 when there is no block yet
  };
  // After a long sleep it goes on where it was, save for the last part of a second.
  for (const Case& c : {Case{11, 0}, Case{1, 528}, Case{0, 0}, Case{11, 0}, Case{2, 1101},
                        Case{475, 22049}, Case{86400 * 1000, 6149}, Case{0, 0}}) {
    const bool isBlock = takeAfter(c.waitMs) == TakeResult::Block;
    ASSERT_EQ(isBlock, c.last != 0) << c.last;
    EXPECT_TRUE(!isBlock || (block.back() == c.last && block.front() == c.last - 511)) << c.last;
  }
  failing = true;
  EXPECT_EQ(takeAfter(25), TakeResult::Gone);
  input.WatchForReturn();
  scheduler.Advance(Milliseconds(5500));
  EXPECT_EQ(told, (std::vector{Kind::OpenFailed, Kind::Opened, Kind::Lost}));
  failing = false;
  scheduler.Advance(Milliseconds(1000));
  EXPECT_EQ(told.back(), Kind::Returned);
  // What was closed meanwhile tells nothing any more.
  input.Open("");
  input.WatchForReturn();
  input.Close();
  EXPECT_EQ(takeAfter(5000), TakeResult::Gone);
  EXPECT_EQ(told.size(), 4U);
}

}  // namespace
}  // namespace velt

#include <gtest/gtest.h>

#include "adapters/demo/paced_input.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

// Numbers its samples; fails on demand.
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
    return !*failing;
  }
  std::shared_ptr<bool> failing = std::make_shared<bool>(false);
  uint64_t next = 0;
};

struct PacedInputTest : testing::Test {
  PacedInputTest() {
    listening =
        input.happened.Listen([this](const AudioEvent& event) { events.push_back(event.kind); });
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
  Connection listening;
  std::array<int16_t, kBlockSamples> block{};
};

TEST_F(PacedInputTest, GivesTheNewestSamplesThatTheClockHasReached) {
  input.Open("");
  EXPECT_EQ(TakeAfter(Milliseconds(5000)), TakeResult::NotYet) << "not started";
  input.Start();
  struct Case {
    int waitMs, last;  // number of the block's last sample, 0 when there is no block yet
  };
  // After a long sleep it goes on where it was, save for the last part of a second.
  for (const Case& c : {Case{11, 0}, Case{1, 528}, Case{0, 0}, Case{11, 0}, Case{2, 1101},
                        Case{475, 22049}, Case{86400 * 1000, 6149}, Case{0, 0}}) {
    const bool isBlock = TakeAfter(Milliseconds(c.waitMs)) == TakeResult::Block;
    ASSERT_EQ(isBlock, c.last != 0) << c.last;
    EXPECT_TRUE(!isBlock || (block.back() == c.last && block.front() == c.last - 511)) << c.last;
  }
  input.Close();
  EXPECT_EQ(input.TakeNewest(block), TakeResult::Gone);
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
  input.WatchForReturn();
  scheduler.Advance(Milliseconds(5500));
  EXPECT_EQ(events, (std::vector{Kind::OpenFailed, Kind::Opened, Kind::Lost}));
  *counter.failing = false;
  scheduler.Advance(Milliseconds(1000));
  EXPECT_EQ(events.back(), Kind::Returned);
  // What was closed meanwhile tells nothing any more.
  input.Open("");
  input.WatchForReturn();
  input.Close();
  scheduler.Advance(Milliseconds(5000));
  EXPECT_EQ(events.size(), 4U);
}

}  // namespace
}  // namespace velt

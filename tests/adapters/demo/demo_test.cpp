#include <gtest/gtest.h>

#include "adapters/demo/paced_input.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

// Numbers its samples.
struct Counter {
  uint64_t next = 0;
  std::string Open() { return ""; }
  bool Read(std::span<int16_t> samples) {
    for (int16_t& sample : samples) sample = static_cast<int16_t>(next++ % 30000);
    return true;
  }
  bool Skip(uint64_t count) {
    next += count;
    return true;
  }
};

TEST(PacedInput, GivesTheNewestSamplesThatTheClockHasReached) {
  VirtualScheduler scheduler;
  PacedInput<Counter> input({}, {"count", "Counter"}, scheduler);
  std::array<int16_t, kBlockSamples> block{};
  input.Open("");
  input.Start();
  using Case = std::pair<int, int>;  // ms, then the block's last sample, 0 when there is none yet
  // After a long sleep it goes on where it was, save for the last part of a second.
  for (const auto& [wait, last] : {Case{11, 0}, Case{1, 528}, Case{0, 0}, Case{13, 1101},
                                   Case{475, 22049}, Case{86400 * 1000, 6149}, Case{0, 0}}) {
    scheduler.Advance(Milliseconds(wait));
    ASSERT_EQ(input.TakeNewest(block), last == 0 ? TakeResult::NotYet : TakeResult::Block) << last;
    EXPECT_TRUE(last == 0 || (block.back() == last && block.front() == last - 511)) << last;
  }
}

}  // namespace
}  // namespace velt

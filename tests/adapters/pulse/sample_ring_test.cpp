#include "adapters/pulse/sample_ring.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace velt {
namespace {

using Block = std::array<int16_t, kBlockSamples>;

std::vector<int16_t> Ramp(int16_t first, size_t count) {
  std::vector<int16_t> ramp(count);
  std::iota(ramp.begin(), ramp.end(), first);
  return ramp;
}

TEST(SampleRing, GivesTheNewestBlockThatWasNotUsedYet) {
  SampleRing ring;
  ring.Hold();
  ring.Deliver();
  Block block{};
  const auto expectRampFrom = [&](int16_t first) {
    ASSERT_EQ(ring.TakeNewest(block), TakeResult::Block);
    EXPECT_EQ(std::vector(block.begin(), block.end()), Ramp(first, kBlockSamples));
    EXPECT_EQ(ring.TakeNewest(block), TakeResult::NotYet);
  };
  ring.Write(Ramp(0, 511));
  EXPECT_EQ(ring.TakeNewest(block), TakeResult::NotYet);
  ring.Write(Ramp(511, 1));
  expectRampFrom(0);
  for (int16_t at = 512; at < 512 + 1102; at += 2) ring.Write(Ramp(at, 2));
  expectRampFrom(1614 - 512);
  ring.Write(Ramp(1614, 3000));
  expectRampFrom(4614 - 512);
  ring.Write(Ramp(4614, 300));
  ring.WriteSilence(100);
  ring.Write(Ramp(5014, 112));
  ASSERT_EQ(ring.TakeNewest(block), TakeResult::Block);
  EXPECT_EQ(std::vector(block.begin(), block.begin() + 300), Ramp(4614, 300));
  EXPECT_EQ(std::vector(block.begin() + 300, block.begin() + 400), std::vector<int16_t>(100, 0));
  EXPECT_EQ(std::vector(block.begin() + 400, block.end()), Ramp(5014, 112));
  ring.WriteSilence(5000);
  ASSERT_EQ(ring.TakeNewest(block), TakeResult::Block);
  EXPECT_EQ(block, Block{});
}

TEST(SampleRing, DeliversOnlyBetweenStartAndEnd) {
  SampleRing ring;
  Block block{};
  ring.Deliver();
  ring.Write(Ramp(0, 1024));
  EXPECT_EQ(ring.TakeNewest(block), TakeResult::Gone);
  ring.Hold();
  ring.Write(Ramp(0, 1024));
  EXPECT_EQ(ring.TakeNewest(block), TakeResult::NotYet);
  ring.Deliver();
  EXPECT_EQ(ring.TakeNewest(block), TakeResult::NotYet);
  ring.Write(Ramp(0, 1024));
  ring.Close();
  EXPECT_EQ(ring.TakeNewest(block), TakeResult::Gone);
  ring.Hold();
  ring.Deliver();
  EXPECT_EQ(ring.TakeNewest(block), TakeResult::NotYet);
}

}  // namespace
}  // namespace velt

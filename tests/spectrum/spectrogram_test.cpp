#include "spectrum/spectrogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "spectrum/scale_ticks.h"

namespace velt {
namespace {

using Block = std::array<int16_t, Spectrogram::blockSamples>;

Block Tone(double frequencyHz, double amplitude, size_t from, size_t to, int64_t block) {
  Block samples{};
  for (size_t i = from; i < to; ++i) {
    const double at = static_cast<double>(block * 512 + static_cast<int64_t>(i)) / 44100;
    samples[i] = static_cast<int16_t>(
        std::lround(amplitude * std::sin(2 * std::numbers::pi * frequencyHz * at)));
  }
  return samples;
}

double DecibelsAt(const LevelPlot& plot, int x, int y) {
  return spectrogramFloorDb * (1 - plot.Row(y)[static_cast<size_t>(x)] / 255.0);
}

// Where the strongest pixel stands.
std::pair<int, int> Brightest(const LevelPlot& plot) {
  const uint8_t* const levels = plot.Row(0).data();
  const auto at = std::max_element(levels, levels + plot.Width() * plot.Height()) - levels;
  return {at % plot.Width(), at / plot.Width()};
}

TEST(SpectrogramTest, ToneStandsAtItsFrequencyWithItsLevel) {
  for (const auto& [width, height, topHz] :
       {std::tuple(37, 100, 22050.0), {1000, 800, 22050.0}, {50, 300, 4000.0}}) {
    Spectrogram spectrogram(width, height, 100, topHz);
    for (int64_t i = 0; i < 100; ++i) spectrogram.Add(Tone(3014.6484375, 3276.8, 0, 512, i));
    spectrogram.Finish();
    const LevelPlot& plot = spectrogram.Plot();
    const auto [x, y] = Brightest(plot);
    const double frequency = (height - 0.5 - y) * topHz / height;
    EXPECT_NEAR(frequency, 3014.6, 22 + topHz / height) << width;
    // The whole row is as strong, and a little beside it there is nothing.
    for (int column = 0; column < width; ++column) {
      ASSERT_NEAR(DecibelsAt(plot, column, y), -20, 0.5) << column;
      ASSERT_EQ(plot.Row(0)[static_cast<size_t>(column)], 0);
    }
    EXPECT_NEAR(spectrogram.Peak().levelDb, -20, 0.01);
    EXPECT_NEAR(spectrogram.Peak().frequencyHz, 3014.6, 0.1);
  }
  // Nor far from a tone between two lines of the transform.
  Spectrogram between(50, 100, 100, 22050);
  for (int64_t i = 0; i < 100; ++i) between.Add(Tone(3036.18, 3276.8, 0, 512, i));
  between.Finish();
  EXPECT_EQ(between.Plot().Row(0)[25], 0);
}

TEST(SpectrogramTest, NoShortSignalIsLost) {
  // Of an hour: wherever it stands in its block, and however small the picture.
  constexpr int64_t kBlocks = 310000 / 50;
  for (const auto& [from, to] :
       {std::pair<size_t, size_t>(0, 512), {0, 8}, {252, 260}, {504, 512}}) {
    Spectrogram spectrogram(120, 64, kBlocks, 22050);
    for (int64_t i = 0; i < kBlocks; ++i) {
      spectrogram.Add(i == kBlocks / 3 ? Tone(6000, 30000, from, to, i) : Block{});
    }
    spectrogram.Finish();
    const LevelPlot small = spectrogram.Plot().Fitted(11, 7);
    const auto [x, y] = Brightest(small);
    EXPECT_EQ(x, 11 / 3) << from;
    EXPECT_GT(DecibelsAt(small, x, y), -60) << from;
    // Silence before it and after it.
    for (const int other : {0, 1, 2, 4, 5, 10}) EXPECT_EQ(DecibelsAt(small, other, y), -100);
  }
}

TEST(SpectrogramTest, OtherNumbersOfBlocksThanAnnouncedAreTaken) {
  for (const int64_t come : {1, 2, 50, 400}) {
    Spectrogram spectrogram(100, 50, 100, 22050);
    for (int64_t i = 0; i < come; ++i) spectrogram.Add(Tone(1000, 10000, 0, 512, i));
    spectrogram.Finish();
    const auto [x, y] = Brightest(spectrogram.Plot());
    EXPECT_EQ(spectrogram.Plot().Row(y)[99] > 0, come >= 100) << come;
    EXPECT_GT(spectrogram.Plot().Row(y)[0], 0) << come;
  }
  EXPECT_EQ(LevelPlot(3, 2).Fitted(9, 1).Width(), 9);
}

TEST(ScaleTicks, StandAtRoundValues) {
  using Texts = std::vector<std::string>;
  for (const auto& [ticks, texts] :
       {std::pair{TimeTicks(0, 10800, 4), Texts{"0:00", "1:00:00", "2:00:00", "3:00:00"}},
        {TimeTicks(0, 200, 5), {"0:00", "1:00", "2:00", "3:00"}},
        {TimeTicks(59.9, 61, 3), {"1:00.0", "1:00.5", "1:01.0"}},
        {TimeTicks(3599.9, 3600.15, 3), {"59:59.9", "1:00:00.0", "1:00:00.1"}},
        {PlainTicks(0, 22.05, 5), {"0", "5", "10", "15", "20"}},
        {PlainTicks(0, 0.5, 3), {"0.0", "0.2", "0.4"}},
        {PlainTicks(0, 0, 5), {}},
        {TimeTicks(5, 4, 5), {}}}) {
    Texts found;
    for (const Tick& tick : ticks) found.push_back(tick.text);
    EXPECT_EQ(found, texts);
  }
}

}  // namespace
}  // namespace velt

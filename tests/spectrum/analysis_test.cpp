#include "spectrum/analysis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numbers>
#include <random>

#include "spectrum/slow_analyser.h"

namespace velt {
namespace {

// With one sample alone, every bin has its strength.
using Block = std::array<int16_t, Analyser::blockSamples>;

// A tone in noise: weak ones leave many equal columns, strong ones reach above the picture.
Block RandomBlock(std::mt19937& random) {
  Block block{};
  const double loudness = std::pow(2.0, random() % 15);
  const double turns = (random() % 512) / 1024.0;
  for (size_t i = 0; i < block.size(); ++i) {
    const double noise = static_cast<double>(random() % 2001) / 1000.0 - 1.0;
    const double tone = std::sin(2 * std::numbers::pi * turns * static_cast<double>(i));
    block[i] = static_cast<int16_t>(loudness * (tone + noise * 0.9));
  }
  return block;
}

WaterPalette Rainbow() {
  WaterPalette palette;
  palette.InitWaterColor(5, 0);
  return palette;
}

// Runs a sequence of blocks through the analyser and through the slow one; everything must be the
// same after every block.
void Compare(const AnalysisSettings& settings, std::mt19937& random, int ticks) {
  const WaterPalette palette = Rainbow();
  Analyser analyser;
  SlowAnalyser slow;
  AnalysisOutput output{Display(), std::vector<double>()};
  std::string text;
  if (random() % 4 == 0) output.display.reset();  // the numbers do not depend on it
  slow.shown = slow.offScreen =
      Raster(settings.plotWidth, settings.plotHeight, settings.background);
  for (int tick = 0; tick < ticks; ++tick) {
    const Block block = RandomBlock(random);
    const float low = static_cast<float>(random() % 20000);
    const float high = random() % 4 == 0 ? low : static_cast<float>(random() % 20000);
    const Tuning tuning{static_cast<int32_t>(random() % 4 == 0 ? 2147480000U : random() % 30000000),
                        {low, high}};
    slow.Tick(block, settings, tuning, palette);
    const Reading reading = analyser.Analyse(block, settings, tuning, palette, output);
    text = reading.freqDetectText.value_or(text);
    ASSERT_EQ(std::tuple(text, reading.dominantFrequencyHz, reading.smeterLevelTwips),
              std::tuple(slow.text, slow.dominantFrequency, slow.meter));
    const auto equal = [](double a, double b) { return std::isnan(a) ? std::isnan(b) : a == b; };
    ASSERT_TRUE(std::ranges::equal(*output.columns, slow.columns, equal)) << tick;
    if (!output.display) continue;
    ASSERT_TRUE(std::ranges::equal(output.display->shown.Pixels(), slow.shown.Pixels())) << tick;
  }
}

TEST(AnalysisTest, EveryModeAndStyleGivesTheObviousPicture) {
  std::mt19937 random(20240611);
  const auto one = [&random](auto... choices) {
    return std::array{choices...}[random() % sizeof...(choices)];
  };
  for (int round = 0; round < 250; ++round) {
    AnalysisSettings s;
    s.zokaMode = one(0, 1, 69);
    s.precision = one(1, 2, 3, 4);
    s.useLines = one(false, true);
    s.waterfall = one(false, true);
    s.oscillosMode = one(false, true);
    s.dominantPeak = one(true, true, true, false);
    s.waterSpeed = one(0, 3);
    s.spectrumDivisor = one(1, 150);
    // Some with failures, of which each skips one statement only: bins beyond the last, divisions
    // by zero, sums and products beyond 32 bits.
    const bool wide = round % 50 == 0;
    s.plotWidth = wide ? 30000 : one(97, 524, 1048);
    s.plotHeight = wide ? 1 : one(61, 110);
    s.scaleOffset = one(0, -1777, 777, 1999, -32768);
    s.waterfallSensitivity = one(50, 50, 7, 0, -1, 800000000);
    s.meterSensitivity = one(4.0F, 0.01F, 1000.0F);
    s.oscillosSensitivity = one(1.0F, 3.0F, 1e15F);
    // Some for longer than a shown peak is held.
    ASSERT_NO_FATAL_FAILURE(Compare(s, random, round % 25 == 1 ? 24 : 6)) << round;
  }
}

TEST(Analysis, TheWaterfallSurvivesANewSize) {
  Analyser analyser;
  AnalysisSettings settings;
  const WaterPalette palette = Rainbow();
  AnalysisOutput output{Display(), {}};
  const auto tick = [&](const Block& block) {
    return analyser.Analyse(block, settings, {}, palette, output);
  };
  settings.waterfall = true;
  settings.waterfallSensitivity = 1;
  for (int row = 0; row < 4; ++row) tick(Block{300});
  settings.plotWidth = 600;
  settings.plotHeight = 50;
  tick(Block{450});
  const Raster& shown = output.display->shown;
  EXPECT_TRUE(shown.Row(0)[523] == palette[300].Argb() && shown.Row(1)[523] == palette[200].Argb());
  EXPECT_EQ(shown.Row(0)[599], palette[300].Argb());
  EXPECT_EQ(shown.Pixels().size(), 600U * 50);
}

TEST(DerivedSettings, DivisorAndLevel) {
  EXPECT_EQ(SpectrumDivisor(0, 100, 10), 1);
  EXPECT_EQ(SpectrumDivisor(32768, 100, 10), 1) << "the position wraps in 16 bits";
  EXPECT_EQ(SpectrumDivisor(100, 100, 30000000), std::nullopt);
  EXPECT_NEAR(dBFS(-16384), -6.0206, 1e-4);
}

TEST(Raster, LinesFromFarOutsideAreCutOff) {
  const Colour ink(255);
  Raster raster(8, 4);
  raster.Line(2, -2000000000, 2, 2000000000, 1, ink);
  raster.Line(5, -500000000, 5, 500000000, 2, ink);
  raster.Line(-500000000, 1, 500000000, 1, 1, ink);
  EXPECT_EQ(std::ranges::count(raster.Pixels(), ink.Argb()), 8 + 6);
  EXPECT_EQ(raster.Row(0)[4], ink.Argb());
  raster.Line(7, 3, 0, 0, 1, ink);
  for (int x = 0; x < 8; ++x) EXPECT_EQ(raster.Row((6 * x + 7) / 14)[x], ink.Argb());
}

}  // namespace
}  // namespace velt

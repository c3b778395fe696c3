#include "spectrum/analysis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numbers>
#include <random>

#include "spectrum/slow_analyser.h"

namespace velt {
namespace {

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

// Every bin has the same strength.
Block Impulse(int16_t strength) {
  Block block{};
  block[0] = strength;
  return block;
}

// The strongest real part is at the bin.
Block Tone(int bin, double strength) {
  Block block{};
  for (size_t i = 0; i < block.size(); ++i) {
    const double angle = 2 * std::numbers::pi * bin * static_cast<double>(i) / 1024;
    block[i] = static_cast<int16_t>(strength * std::cos(angle));
  }
  return block;
}

WaterPalette Rainbow() {
  WaterPalette palette;
  palette.InitWaterColor(5, 0);
  return palette;
}

// Runs a sequence of blocks through the analyser with and without drawing and through the slow
// one; everything must be the same after every block.
void Compare(AnalysisSettings settings, std::mt19937& random, int ticks) {
  const WaterPalette palette = Rainbow();
  Analyser drawing;
  Analyser silent;
  SlowAnalyser slow;
  AnalysisOutput output{Display(), std::vector<double>()};
  AnalysisOutput nothing;
  std::string text;
  slow.offScreen.assign(static_cast<size_t>(settings.plotWidth * settings.plotHeight),
                        settings.background.Argb());
  slow.shown = slow.offScreen;
  for (int tick = 0; tick < ticks; ++tick) {
    const Block block = RandomBlock(random);
    const float low = static_cast<float>(random() % 20000);
    const float high = random() % 4 == 0 ? low : static_cast<float>(random() % 20000);
    const Tuning tuning{static_cast<int32_t>(random() % 4 == 0 ? 2147480000U : random() % 30000000),
                        {low, high}};
    slow.Tick(block, settings, tuning, palette);
    const Reading reading = drawing.Analyse(block, settings, tuning, palette, output);
    const Reading same = silent.Analyse(block, settings, tuning, palette, nothing);
    text = reading.freqDetectText.value_or(text);
    ASSERT_EQ(text, slow.text);
    ASSERT_EQ(reading.freqDetectText, same.freqDetectText);
    for (const Reading& r : {reading, same}) {
      ASSERT_EQ(r.dominantFrequencyHz, slow.dominantFrequency);
      ASSERT_EQ(r.smeterLevelTwips, slow.meter);
    }
    const auto equal = [](double a, double b) { return std::isnan(a) ? std::isnan(b) : a == b; };
    ASSERT_TRUE(std::ranges::equal(*output.columns, slow.columns, equal)) << "tick " << tick;
    ASSERT_TRUE(std::ranges::equal(output.display->shown.Pixels(), slow.shown)) << "tick " << tick;
  }
}

TEST(AnalysisTest, EveryModeAndStyleGivesTheObviousPicture) {
  std::mt19937 random(20240611);
  for (const int16_t mode : {0, 1, 69}) {
    for (int16_t precision = 1; precision <= 4; ++precision) {
      for (int style = 0; style < 8; ++style) {
        AnalysisSettings settings;
        settings.zokaMode = mode;
        settings.precision = precision;
        settings.useLines = style & 1;
        settings.waterfall = style & 2;
        settings.oscillosMode = style & 4;
        settings.scaleOffset = static_cast<int16_t>(random() % 4000) - 2000;
        for (const int16_t width : {97, 524, 1048}) {
          settings.plotWidth = width;
          settings.spectrumDivisor = width == 97 ? 1 : 150;
          settings.waterSpeed = width == 97 ? 0 : 3;
          ASSERT_NO_FATAL_FAILURE(Compare(settings, random, 6))
              << "mode " << mode << " precision " << precision << " style " << style << " width "
              << width;
        }
      }
    }
  }
}

TEST(AnalysisTest, FailuresSkipOneStatementOnly) {
  std::mt19937 random(7);
  const auto check = [&random](auto change) {
    for (const bool waterfall : {false, true}) {
      for (const int16_t precision : {1, 3}) {
        AnalysisSettings settings;
        settings.zokaMode = 1;
        settings.precision = precision;
        settings.waterfall = waterfall;
        settings.useLines = precision != 1;
        settings.plotHeight = 61;
        settings.oscillosMode = true;
        change(settings);
        ASSERT_NO_FATAL_FAILURE(Compare(settings, random, 25));
      }
    }
  };
  check([](AnalysisSettings& s) { s.scaleOffset = -32768; });  // bins beyond the last
  check([](AnalysisSettings& s) { s.scaleOffset = 777; });
  check([](AnalysisSettings& s) { s.waterfallSensitivity = 0; });
  check([](AnalysisSettings& s) { s.waterfallSensitivity = -1; });
  check([](AnalysisSettings& s) { s.waterfallSensitivity = 800000000; });
  check([](AnalysisSettings& s) { s.meterSensitivity = 1000; });
  check([](AnalysisSettings& s) { s.oscillosSensitivity = 1e15F; });
  check([](AnalysisSettings& s) {  // the meter's sum passes 32 bits
    s.plotWidth = 30000;
    s.plotHeight = 1;
    s.meterSensitivity = 0.01F;
  });
  check([](AnalysisSettings& s) { s.dominantPeak = false; });
}

class AnalysisTicks : public testing::Test {
 protected:
  Reading Tick(const Block& block) {
    return analyser.Analyse(block, settings, tuning, palette, output);
  }
  std::string TextFor(const Block& block) { return Tick(block).freqDetectText.value_or("none"); }

  Analyser analyser;
  AnalysisSettings settings;
  Tuning tuning;
  WaterPalette palette = Rainbow();
  AnalysisOutput output{Display(), std::vector<double>()};
};

TEST_F(AnalysisTicks, SilenceIsFlatAndStill) {
  const Reading reading = Tick(Block{});
  EXPECT_EQ(reading.smeterLevelTwips, 0);
  EXPECT_EQ(output.columns->size(), 525U);
  EXPECT_EQ(std::ranges::count(*output.columns, 0.0), 525);
  const auto pixels = output.display->shown.Pixels();
  EXPECT_EQ(std::ranges::count(pixels, settings.background.Argb()), 524 * 110);
}

TEST_F(AnalysisTicks, OfEqualColumnsTheLastIsThePeak) {
  // Pair 0.49 * 524, that is bin 513.52: 2 * CLng(Int(256.76 * 44100) / 1024) Hz.
  EXPECT_EQ(TextFor(Impulse(10000)), "22116Hz");
  // A louder column further left keeps it: its level is above the later ones'.
  EXPECT_EQ(Tick(Tone(100, 8000)).dominantFrequencyHz, 4304);
}

TEST_F(AnalysisTicks, AShownPeakOnlyRisesForTwentyOneTicks) {
  EXPECT_EQ(TextFor(Tone(200, 8000)), "8610Hz");
  for (int tick = 2; tick <= 21; ++tick) {
    const Reading lower = Tick(Tone(100, 8000));
    ASSERT_FALSE(lower.freqDetectText) << tick;
    ASSERT_EQ(lower.dominantFrequencyHz, 4304);
  }
  EXPECT_EQ(TextFor(Tone(100, 8000)), "4304Hz");
}

TEST_F(AnalysisTicks, InTheEngineModesThePeakIsTextOfTheRigsFrequency) {
  struct Case {
    int16_t mode;
    int32_t rigHz;
    int bin;
    const char* text;
  };
  // The digits behind the point come from the offset alone, and its sign is lost.
  const Case cases[] = {{1, 14074000, 300, "14074.09"},
                        {1, 14074000, 200, "14070.33"},
                        {69, 7100000, 300, "7100.09"},
                        {1, 5000, 100, "-2.76"}};
  for (const Case& c : cases) {
    analyser = Analyser();
    settings.zokaMode = c.mode;
    tuning.rigFrequencyHz = c.rigHz;
    EXPECT_EQ(TextFor(Tone(c.bin, 8000)), c.text) << c.mode << " " << c.bin;
  }
}

TEST_F(AnalysisTicks, AWaterfallStrengthOf524StartsOverAndRowsMoveEveryFourthTick) {
  settings.waterfall = true;
  settings.waterfallSensitivity = 1;
  settings.plotWidth = 20;
  settings.plotHeight = 2;
  const auto rowIs = [this](int y, int entry) {
    const auto row = output.display->shown.Row(y);
    return std::ranges::count(row, palette[entry].Argb()) == 20;
  };
  Tick(Impulse(786));  // 2 * 786 / 3
  EXPECT_TRUE(rowIs(0, 0));
  Tick(Impulse(785));
  EXPECT_TRUE(rowIs(0, 523));
  Tick(Impulse(300));
  EXPECT_FALSE(rowIs(1, 200));
  Tick(Impulse(300));
  EXPECT_TRUE(rowIs(0, 200) && rowIs(1, 200));
  Tick(Impulse(450));
  EXPECT_TRUE(rowIs(0, 300) && rowIs(1, 200));
}

TEST_F(AnalysisTicks, ANewSizeKeepsWhatTheWaterfallShows) {
  settings.waterfall = true;
  settings.waterfallSensitivity = 1;
  settings.waterSpeed = 0;
  Tick(Impulse(300));
  settings.plotWidth = 600;
  settings.plotHeight = 50;
  Tick(Impulse(450));
  const Raster& shown = output.display->shown;
  ASSERT_EQ(shown.Width() * shown.Height(), 600 * 50);
  EXPECT_EQ(shown.Row(1)[599], palette[300].Argb());
  EXPECT_EQ(shown.Row(2)[523], palette[200].Argb());
  EXPECT_EQ(shown.Row(2)[524], settings.background.Argb());
}

}  // namespace
}  // namespace velt

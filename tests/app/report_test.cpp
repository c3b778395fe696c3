#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "app/analyse_report.h"
#include "text/formats.h"

namespace velt {
namespace {

std::string ThreeDecimals(double value) {
  std::string line;
  AppendThreeDecimals(line, value);
  return line;
}

TEST(AnalyseReport, ThreeDecimalsAreTheExactOnes) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> wide(0.0, 3000.0);
  for (int i = 0; i < 20000; ++i) {
    const double value = wide(random);
    ASSERT_EQ(ThreeDecimals(value), FixedText(value, 3)) << value;
    const double tie = std::floor(value) + 0.0005;
    ASSERT_EQ(ThreeDecimals(tie), FixedText(tie, 3)) << tie;
  }
  for (const double value : {0.0, 0.0004, 0.9996, 1.0005, 99999.9995, -1.5, 1e12}) {
    EXPECT_EQ(ThreeDecimals(value), FixedText(value, 3)) << value;
  }
}

TEST(AnalyseReport, SilenceIsNoFrequency) {
  AnalysisSummary summary;
  for (const bool silent : {true, true, true, false}) {
    summary.Count({.freqDetectText = {}, .dominantFrequencyHz = 22116, .silent = silent});
  }
  EXPECT_EQ(summary.Text(1.0),
            "Blocks: 4\nSpeed: 0 times real time\n"
            "Strongest frequencies: silence (75 %) 22116 Hz (25 %)\n");
}

}  // namespace
}  // namespace velt

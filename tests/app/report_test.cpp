#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "app/analyse_report.h"
#include "text/formats.h"

namespace velt {
namespace {

TEST(AnalyseReport, ThreeDecimalsAreTheExactOnes) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> wide(0.0, 3000.0);
  std::vector<double> values{0.0, 0.0004, 0.9996, 1.0005, 99999.9995, -1.5, 1e12};
  for (int i = 0; i < 20000; ++i) {
    values.push_back(wide(random));
    values.push_back(std::floor(values.back()) + 0.0005);  // a tie
  }
  for (const double value : values) {
    std::string line;
    AppendThreeDecimals(line, value);
    ASSERT_EQ(line, FixedText(value, 3)) << value;
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

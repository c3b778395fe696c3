#include <gtest/gtest.h>

#include "app/analyse_report.h"
#include "text/formats.h"

namespace velt {
namespace {

TEST(AnalyseReport, ThreeDecimalsAreTheExactOnes) {
  std::vector<double> values{0.0, 0.0004, 0.9996, 99999.9995, -1.5, 1e12};
  for (int i = 0; i < 20000; ++i) values.push_back(i * 0.0705);  // some of them ties
  for (const double value : values) {
    std::string line;
    AppendThreeDecimals(line, value);
    ASSERT_EQ(line, FixedText(value, 3)) << value;
  }
}

}  // namespace
}  // namespace velt

#include "text/formats.h"

#include <gtest/gtest.h>

#include <string>

#include "text/numbers.h"

namespace velt {
namespace {

TEST(Formats, FrequencyTextKeepsItsDotsAndReadsBack) {
  using Case = std::pair<int32_t, const char*>;
  for (const auto& [frequencyHz, text] :
       {Case{7100000, "7.100.00"}, Case{14074019, "14.074.01"}, Case{475000, ".475.00"},
        Case{1296200000, "1296.200.00"}, Case{1005000, "1.005.00"}, Case{0, ".."}}) {
    EXPECT_EQ(FrequencyText(frequencyHz), text);
    EXPECT_EQ(ParseWhole(Without(text, '.')).value_or(0), frequencyHz / 10);
  }
}

}  // namespace
}  // namespace velt

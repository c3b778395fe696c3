#include "text/formats.h"

#include <gtest/gtest.h>

#include <string>

#include "text/numbers.h"

namespace velt {
namespace {

TEST(Formats, FrequencyTextKeepsItsDotsAndReadsBack) {
  struct Case {
    int32_t frequencyHz;
    const char* text;
  };
  for (const auto& [frequencyHz, text] :
       {Case{7100000, "7.100.00"}, Case{14074019, "14.074.01"}, Case{475000, ".475.00"},
        Case{50000, ".50.00"}, Case{1296200000, "1296.200.00"}, Case{1005000, "1.005.00"},
        Case{0, ".."}}) {
    EXPECT_EQ(FrequencyText(frequencyHz), text);
    EXPECT_EQ(ParseWhole(Without(text, '.')).value_or(0), frequencyHz / 10);
  }
}

TEST(Formats, TwoDigitsAndSingleTexts) {
  EXPECT_EQ(AtLeastTwoDigits(7), "07");
  EXPECT_EQ(AtLeastTwoDigits(-2147483647 - 1), "2147483648");
  EXPECT_EQ(LastCharacters("123", 2), "23");
  EXPECT_EQ(LastCharacters("1", 2), "1");
  EXPECT_EQ(SingleText(0.1F), "0.1");
  EXPECT_EQ(SingleText(8385.0F), "8385");
}

}  // namespace
}  // namespace velt

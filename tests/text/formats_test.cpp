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
  const Case cases[] = {
      {7100000, "7.100.00"},       {14250000, "14.250.00"}, {14074019, "14.074.01"},
      {475000, ".475.00"},         {50000, ".50.00"},       {144300000, "144.300.00"},
      {1296200000, "1296.200.00"}, {1005000, "1.005.00"},   {0, ".."}};
  for (const Case& c : cases) {
    EXPECT_EQ(FrequencyText(c.frequencyHz), c.text);
  }
  for (const int32_t frequencyHz : {475000, 1005000, 7100000, 1296200000}) {
    EXPECT_EQ(ParseWhole(Without(FrequencyText(frequencyHz), '.')), frequencyHz / 10);
  }
}

TEST(Formats, TwoDigitsWholeAndSingleTexts) {
  EXPECT_EQ(AtLeastTwoDigits(7), "07");
  EXPECT_EQ(AtLeastTwoDigits(-123), "123");
  EXPECT_EQ(AtLeastTwoDigits(-2147483647 - 1), "2147483648");
  EXPECT_EQ(LastCharacters("123", 2), "23");
  EXPECT_EQ(LastCharacters("1", 2), "1");
  EXPECT_EQ(SingleText(0.1F), "0.1");
  EXPECT_EQ(SingleText(8385.0F), "8385");
  EXPECT_EQ(FixedText(2.0004, 3), "2.000");
  EXPECT_EQ(FixedText(-1.5, 3), "-1.500");
  EXPECT_EQ(Without(".475.00", '.'), "47500");
}

}  // namespace
}  // namespace velt

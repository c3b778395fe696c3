#include "text/numbers.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>

namespace velt {
namespace {

TEST(Numbers, RoundingGoesToTheEvenNeighbourAndRefusesWhatDoesNotFit) {
  using Limits = std::numeric_limits<double>;
  const std::map<double, int32_t> fit = {{0.5, 0},
                                         {1.5, 2},
                                         {2.5, 2},
                                         {-0.5, 0},
                                         {-1.5, -2},
                                         {-2.5, -2},
                                         {2.4999, 2},
                                         {-2.5001, -3},
                                         {2147483647.4, INT32_MAX},
                                         {-2147483648.5, INT32_MIN}};
  for (const auto& [value, rounded] : fit) EXPECT_EQ(RoundHalfEven(value), rounded) << value;
  for (const double value :
       {2147483647.5, -2147483649.0, Limits::infinity(), Limits::quiet_NaN()}) {
    EXPECT_EQ(RoundHalfEven(value), std::nullopt) << value;
  }
  EXPECT_EQ(RoundHalfEven16(32767.4), 32767);
  EXPECT_EQ(RoundHalfEven16(32768), std::nullopt);
}

TEST(Numbers, SixteenBitArithmeticWraps) {
  EXPECT_EQ(WrapMultiply16(33, 1000), -32536);
  EXPECT_EQ(WrapMultiply16(-33, 1000), 32536);
  EXPECT_EQ(WrapMultiply16(2, 1000), 2000);
  EXPECT_EQ(Wrap16(65536), 0);
}

TEST(Numbers, DivisionTruncatesTowardZero) {
  EXPECT_EQ(DivideTruncating(-7, 2), -3);
  EXPECT_EQ(DivideTruncating(7, 0), std::nullopt);
}

TEST(Numbers, LeadingNumberStopsAtTheFirstOtherCharacter) {
  struct Case {
    const char* text;
    double value;
    double anyLocale;
  };
  const Case cases[] = {{"", 0, 0},          {"abc", 0, 0},
                        {"  12kHz", 12, 12}, {"7.100.00", 7.1, 7.1},
                        {"7,5", 7, 7.5},     {"-3.25x", -3.25, -3.25},
                        {"+4", 4, 4},        {".475.00", 0.475, 0.475},
                        {"1e3", 1000, 1000}, {"1 2", 1, 1},
                        {"-", 0, 0},         {".", 0, 0}};
  for (const Case& c : cases) {
    EXPECT_DOUBLE_EQ(LeadingNumber(c.text), c.value) << c.text;
    EXPECT_DOUBLE_EQ(LeadingNumberAnyLocale(c.text), c.anyLocale) << c.text;
  }
}

}  // namespace
}  // namespace velt

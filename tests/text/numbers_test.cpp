#include "text/numbers.h"

#include <gtest/gtest.h>

#include <limits>

namespace velt {
namespace {

TEST(Numbers, RoundingGoesToTheEvenNeighbourAndDivisionToZero) {
  using Limits = std::numeric_limits<double>;
  using Case = std::pair<double, int32_t>;
  for (const auto& [value, rounded] :
       {Case{0.5, 0}, Case{1.5, 2}, Case{2.5, 2}, Case{-1.5, -2}, Case{-2.5, -2}, Case{2.4999, 2},
        Case{-2.5001, -3}, Case{2147483647.4, INT32_MAX}, Case{-2147483648.5, INT32_MIN}}) {
    EXPECT_EQ(RoundHalfEven(value), rounded) << value;
  }
  for (const double value :
       {2147483647.5, -2147483649.0, Limits::infinity(), Limits::quiet_NaN()}) {
    EXPECT_EQ(RoundHalfEven(value), std::nullopt) << value;
  }
  EXPECT_EQ(RoundHalfEven16(32767.4), 32767);
  EXPECT_EQ(RoundHalfEven16(32768), std::nullopt);
  EXPECT_EQ(WrapMultiply16(33, 1000), -32536) << "but a product wraps";
  EXPECT_EQ(DivideTruncating(-7, 2), -3);
  EXPECT_EQ(DivideTruncating(7, 0), std::nullopt);
}

TEST(Numbers, LeadingNumberStopsAtTheFirstOtherCharacter) {
  using Case = std::tuple<const char*, double, double>;
  for (const auto& [text, value, anyLocale] :
       {Case{"", 0, 0}, Case{"abc", 0, 0}, Case{"  12kHz", 12, 12}, Case{"7.100.00", 7.1, 7.1},
        Case{"7,5", 7, 7.5}, Case{"-3.25x", -3.25, -3.25}, Case{"+4", 4, 4},
        Case{".475.00", 0.475, 0.475}, Case{"1e3", 1000, 1000}, Case{"1 2", 1, 1}, Case{"-", 0, 0},
        Case{".", 0, 0}}) {
    EXPECT_DOUBLE_EQ(LeadingNumber(text), value) << text;
    EXPECT_DOUBLE_EQ(LeadingNumberAnyLocale(text), anyLocale) << text;
  }
}

}  // namespace
}  // namespace velt

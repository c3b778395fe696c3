// Rounding for the inner loops.
#pragma once

#include <cfloat>

namespace velt {

// The nearest whole number, halves to even, as RoundHalfEven gives it, but without a branch or a
// call, so that loops over it vectorise. For |value| below 2^51; NaN stays NaN.
inline double NearestWhole(double value) {
  static_assert(FLT_EVAL_METHOD == 0, "needs sums that are rounded to double");
  // Beyond 2^52 a double has no fraction: the addition itself rounds.
  constexpr double noFraction = 0x1.8p52;
  return (value + noFraction) - noFraction;
}

}  // namespace velt

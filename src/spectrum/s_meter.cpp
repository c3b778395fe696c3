#include "spectrum/s_meter.h"

#include <algorithm>
#include <cmath>

#include "text/numbers.h"

namespace velt {
namespace {

constexpr double kS9Twips = 200000;

}  // namespace

double SUnits(int32_t levelTwips) {
  if (levelTwips <= 0) return 0;
  return std::max(0.0, 9 + std::log2(levelTwips / kS9Twips));
}

int SMeterBar(int32_t levelTwips, int height) {
  const double part = std::min(SUnits(levelTwips) / kMostSUnits, 1.0);
  return RoundHalfEven(part * std::max(height, 0)).value_or(0);
}

}  // namespace velt

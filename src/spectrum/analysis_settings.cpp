#include "spectrum/analysis_settings.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "text/numbers.h"

namespace velt {

std::optional<int32_t> SpectrumDivisor(int32_t sliderValue, int32_t sliderMax,
                                       int32_t sensitivity) {
  const int64_t position = Wrap16(int64_t{sliderValue} - sliderMax + 100);
  const int64_t product = position * sensitivity;
  if (product < std::numeric_limits<int32_t>::min() ||
      product > std::numeric_limits<int32_t>::max()) {
    return std::nullopt;
  }
  return static_cast<int32_t>(std::max<int64_t>(product, 1));
}

double BinsPerPixel(int32_t drawableWidth) {
  if (drawableWidth < 1) return 0.0;
  return 524 * 0.98 / (2.0 * drawableWidth);
}

double dBFS(int32_t amplitude) {
  if (amplitude == 0) return -96.0;
  return 20.0 * std::log10(std::abs(static_cast<double>(amplitude)) / 32768.0);
}

}  // namespace velt

#include "spectrum/column_plan.h"

#include <algorithm>
#include <cmath>

#include "spectrum/bulk_rounding.h"
#include "text/numbers.h"

namespace velt {
namespace {

constexpr double sampleRateHz = 44100.0;

}  // namespace

uint16_t ColumnPlan::Bin(double position) {
  const double nearest = NearestWhole(position);
  return nearest >= 0 && nearest < binCount ? static_cast<uint16_t>(nearest) : noBin;
}

void ColumnPlan::Prepare(const AnalysisSettings& settings) {
  const Key key{settings.zokaMode, std::clamp<int16_t>(settings.precision, 1, 4),
                settings.scaleOffset, settings.plotWidth};
  if (key == key_) return;
  key_ = key;
  Build();
}

void ColumnPlan::Build() {
  const bool shifted = key_.zokaMode == shiftedMode;
  lineWidth_ = key_.precision > 1 ? key_.precision - 1 : key_.precision;
  step_ = key_.precision;
  // The shifted mode has the two finest resolutions the other way round.
  if (shifted && key_.precision <= 2) step_ = 3 - key_.precision;

  const int32_t firstColumn = RoundHalfEven(key_.scaleOffset / (shifted ? 20.0 : 40.0)).value_or(0);
  const double advance = step_ * BinsPerPixel(key_.plotWidth) / (shifted ? 2 : 1);
  columns_.clear();
  binsUsed_ = 0;
  float binPosition = key_.zokaMode;
  for (int32_t x = firstColumn; x <= key_.plotWidth; x += step_) {
    const double twice = 2.0 * binPosition;
    const double frequency = std::floor(binPosition * sampleRateHz) / binCount;
    const Column column{x,          binPosition,    RoundHalfEven(frequency).value_or(0),
                        Bin(twice), Bin(twice + 1), Bin(twice + 2)};
    for (const int bin : {column.p, column.p1, column.p2}) {
      if (bin != noBin) binsUsed_ = std::max(binsUsed_, bin + 1);
    }
    columns_.push_back(column);
    // A single: what it loses at each step decides which bins the later columns show.
    binPosition = static_cast<float>(binPosition + advance);
  }
}

}  // namespace velt

// Which bins each column of the plot shows.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "spectrum/analysis_settings.h"

namespace velt {

// One step of the walk over the plot.
struct Column {
  int32_t x;
  float binPosition;      // in pairs of bins
  int32_t peakFrequency;  // half the frequency in Hz
  // The bins at twice the position, plus 0, 1 and 2, each rounded by itself (so they need not be
  // neighbours); ColumnPlan::noBin where there is none.
  uint16_t p;
  uint16_t p1;
  uint16_t p2;
};

// The walk depends on few settings and not on the sound, so it is made once and kept until one of
// them changes.
class ColumnPlan {
 public:
  static constexpr int binCount = 1024;
  static constexpr uint16_t noBin = binCount;

  // The bin nearest to a position (halves to even), or noBin.
  static uint16_t Bin(double position);

  void Prepare(const AnalysisSettings& settings);

  // From the first column to the one just right of the plot, which lies outside of the picture
  // but counts.
  std::span<const Column> Columns() const { return columns_; }
  // 1 to 4 pixels from column to column.
  int Step() const { return step_; }
  // 1 to 3 pixels.
  int LineWidth() const { return lineWidth_; }
  // One more than the highest bin that any column shows.
  int BinsUsed() const { return binsUsed_; }

 private:
  struct Key {
    int16_t zokaMode;
    int16_t precision;
    int16_t scaleOffset;
    int16_t plotWidth;
    bool operator==(const Key&) const = default;
  };

  void Build();

  Key key_{0, 0, 0, 0};
  std::vector<Column> columns_;
  int step_ = 1;
  int lineWidth_ = 1;
  int binsUsed_ = 0;
};

}  // namespace velt

// The picture of one block as spectrum and oscilloscope trace.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "spectrum/analysis_settings.h"
#include "spectrum/column_plan.h"
#include "spectrum/raster.h"

namespace velt {

// The audio range that the rig lets through; edges that are equal mean that there is none.
struct Passband {
  float lowHz = 0.0F;
  float highHz = 0.0F;
};

// Draws columns from left to right, each over what the former ones left. Values between two pixels
// go to the nearest one, halves to the even one.
class SpectrumPicture {
 public:
  // Per bin the height of its part of a column, in pixels; NaN where there is none, as there is
  // for ColumnPlan::noBin.
  using Heights = std::span<const double, ColumnPlan::binCount + 1>;
  using Samples = std::span<const int16_t, ColumnPlan::binCount>;

  // Fills the whole picture, which has the plot's size.
  void Draw(const ColumnPlan& plan, const AnalysisSettings& settings, Passband passband,
            Heights heights, Samples samples, Raster& picture);

 private:
  void PrepareGround(const AnalysisSettings& settings, Passband passband, size_t width);
  void DrawBarsOnly(const ColumnPlan& plan, const AnalysisSettings& settings, Heights heights,
                    Raster& picture);

  // A row of the picture below the traces, which is the same for all rows.
  std::vector<uint32_t> ground_;
  // Per pixel column the first row of a bar.
  std::vector<int32_t> tops_;
};

}  // namespace velt

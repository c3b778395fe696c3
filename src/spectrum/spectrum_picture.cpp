#include "spectrum/spectrum_picture.h"

#include <algorithm>
#include <cmath>

#include "spectrum/bulk_rounding.h"
#include "text/numbers.h"

namespace velt {
namespace {

// A row or column of the picture, or nothing where the value cannot be formed.
using Place = std::optional<int32_t>;

// Far beyond any picture counts as nothing, which is how Raster takes it too.
Place RowOf(double y) {
  const double row = NearestWhole(y);
  if (!(std::abs(row) < 1e9)) return std::nullopt;
  return static_cast<int32_t>(row);
}

// The traces of one block, drawn column by column.
class Traces {
 public:
  Traces(const ColumnPlan& plan, const AnalysisSettings& settings, SpectrumPicture::Heights heights,
         SpectrumPicture::Samples samples, Raster& picture)
      : plan_(plan), settings_(settings), heights_(heights), samples_(samples), picture_(picture) {}

  void DrawSpectrum(const Column& column) {
    const Place here = SpectrumRow(column.p, column.p1);
    if (settings_.useLines) {
      Segment(column.x, settings_.plotHeight, column.x, here, settings_.trace);
      return;
    }
    const Place next = SpectrumRow(column.p1, column.p2);
    if (settings_.zokaMode == shiftedMode) {
      Segment(column.x, here, column.x + 1, next, settings_.trace);
    } else {
      Point(column.x, here, settings_.trace);
      Segment(column.x, here, column.x, next, settings_.trace);
    }
  }

  void DrawOscilloscope(const Column& column) {
    const double twice = 2.0 * column.binPosition;
    const Place next = SoundRow(twice + 1, twice + 2);
    if (plan_.Step() > 1) {
      for (int n = 0; n <= plan_.Step(); ++n) {
        Segment(column.x + n, SoundRow(twice + n, twice + 1), column.x, next,
                settings_.oscilloscope);
      }
    } else {
      const Place here = SoundRow(twice, twice + 1);
      Point(column.x, here, settings_.oscilloscope);
      Segment(column.x, here, column.x, next, settings_.oscilloscope);
    }
  }

 private:
  Place SpectrumRow(int a, int b) const {
    return RowOf(settings_.plotHeight -
                 (heights_[static_cast<size_t>(a)] + heights_[static_cast<size_t>(b)]));
  }

  Place SoundRow(double a, double b) const {
    const uint16_t first = ColumnPlan::Bin(a);
    const uint16_t second = ColumnPlan::Bin(b);
    if (first == ColumnPlan::noBin || second == ColumnPlan::noBin) return std::nullopt;
    const double sum = samples_[first] / 512.0 + samples_[second] / 512.0;
    return RowOf(settings_.plotHeight / 2.0 - sum * settings_.oscillosSensitivity - 3);
  }

  void Point(int x, Place y, Colour colour) { Segment(x, y, x, y, colour); }

  void Segment(int x1, Place y1, int x2, Place y2, Colour colour) {
    if (y1 && y2) picture_.Line(x1, *y1, x2, *y2, plan_.LineWidth(), colour);
  }

  const ColumnPlan& plan_;
  const AnalysisSettings& settings_;
  SpectrumPicture::Heights heights_;
  SpectrumPicture::Samples samples_;
  Raster& picture_;
};

}  // namespace

void SpectrumPicture::Draw(const ColumnPlan& plan, const AnalysisSettings& settings,
                           Passband passband, Heights heights, Samples samples, Raster& picture) {
  PrepareGround(settings, passband, static_cast<size_t>(picture.Width()));
  if (settings.useLines && !settings.oscillosMode) {
    DrawBarsOnly(plan, settings, heights, picture);
    return;
  }
  for (int y = 0; y < picture.Height(); ++y) std::ranges::copy(ground_, picture.Row(y).begin());
  Traces traces(plan, settings, heights, samples, picture);
  for (const Column& column : plan.Columns()) {
    traces.DrawSpectrum(column);
    if (settings.oscillosMode) traces.DrawOscilloscope(column);
  }
}

void SpectrumPicture::PrepareGround(const AnalysisSettings& settings, Passband passband,
                                    size_t width) {
  ground_.assign(width, settings.background.Argb());
  if (passband.lowHz == passband.highHz) return;
  const double plotWidth = settings.plotWidth;
  Place from;
  Place to;
  if (settings.zokaMode == 1) {
    from = RoundHalfEven(plotWidth / 10000 * passband.lowHz * 0.45 + 1);
    to = RoundHalfEven(plotWidth / 10000 * passband.highHz * 0.45 + 1);
  } else if (settings.zokaMode == shiftedMode) {
    from = RoundHalfEven(plotWidth / 11500 * (passband.lowHz - 5760.0));
    to = RoundHalfEven(plotWidth / 11500 * (passband.highHz - 5760.0) + 1);
  }
  if (!from || !to) return;
  const int64_t last = static_cast<int64_t>(width) - 1;
  const int64_t left = std::max<int64_t>(std::min(*from, *to), 0);
  const int64_t right = std::min<int64_t>(std::max(*from, *to), last);
  for (int64_t x = left; x <= right; ++x) {
    ground_[static_cast<size_t>(x)] = settings.passband.Argb();
  }
}

// Bars reach from their top down to the lower edge, so each pixel is decided by its row and its
// column's top alone: the rows are written once, from left to right, ground included.
void SpectrumPicture::DrawBarsOnly(const ColumnPlan& plan, const AnalysisSettings& settings,
                                   Heights heights, Raster& picture) {
  const int width = picture.Width();
  tops_.assign(static_cast<size_t>(width), picture.Height());
  for (const Column& column : plan.Columns()) {
    const Place y = RowOf(settings.plotHeight - (heights[column.p] + heights[column.p1]));
    if (!y) continue;
    const int left = column.x - plan.LineWidth() / 2;
    for (int x = std::max(left, 0); x < std::min(left + plan.LineWidth(), width); ++x) {
      int32_t& top = tops_[static_cast<size_t>(x)];
      top = std::min(top, *y);
    }
  }
  const uint32_t trace = settings.trace.Argb();
  const uint32_t* const ground = ground_.data();
  const int32_t* const tops = tops_.data();
  for (int y = 0; y < picture.Height(); ++y) {
    uint32_t* const out = picture.Row(y).data();
    for (int x = 0; x < width; ++x) {
      // Read whether needed or not: only then the loop vectorises.
      const uint32_t below = ground[x];
      out[x] = y >= tops[x] ? trace : below;
    }
  }
}

}  // namespace velt

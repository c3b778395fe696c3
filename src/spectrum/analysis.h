// What one block of sound says: the picture of it, the strongest frequency, the level.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "spectrum/analysis_settings.h"
#include "spectrum/column_plan.h"
#include "spectrum/fft.h"
#include "spectrum/palette.h"
#include "spectrum/raster.h"
#include "spectrum/spectrum_picture.h"

namespace velt {

// What the rig is set to.
struct Tuning {
  int32_t rigFrequencyHz = 0;
  Passband passband;
};

// The picture that is seen, and the one that the spectrum is prepared in.
struct Display {
  Raster shown;
  Raster offScreen;
};

// What is wanted besides the reading; what is absent costs nothing.
struct AnalysisOutput {
  // Takes the plot's size at the next block, its upper left part kept and the rest in the
  // background colour.
  std::optional<Display> display;
  // Receives per column step the height of its bar in pixels, NaN where a bin does not exist.
  std::optional<std::vector<double>> columns;
};

struct Reading {
  // The peak's new text; absent when it stays as it is.
  std::optional<std::string> freqDetectText;
  int32_t dominantFrequencyHz = 0;
  // How far the S-meter has risen in twips, 0 or more and without an upper limit.
  int32_t smeterLevelTwips = 0;
  bool displayChanged = false;
  // Every sample of the block was 0: what is the strongest in it means nothing.
  bool silent = false;
};

// The analysis, block by block. Numbers do not depend on whether anything is drawn. A step whose
// result cannot be formed (an overflow, a division by zero, a bin beyond the last) leaves its
// target as it was, and the rest goes on.
class Analyser {
 public:
  static constexpr size_t blockSamples = 512;

  Reading Analyse(std::span<const int16_t, blockSamples> block, const AnalysisSettings& settings,
                  const Tuning& tuning, const WaterPalette& palette, AnalysisOutput& output);

  // Draws the spectrum of the last block once more, in other colours; the plot has to have the size
  // that it had then.
  void DrawAgain(const AnalysisSettings& settings, Passband passband, Display& display);

 private:
  static constexpr size_t binCount = ColumnPlan::binCount;

  void ComputeHeights(int32_t divisor);
  bool DrawWaterfallRow(const AnalysisSettings& settings, const WaterPalette& palette,
                        Raster& shown) const;
  std::optional<std::string> FindPeak(const AnalysisSettings& settings, int32_t rigFrequencyHz);
  bool ScrollIsDue(int16_t waterSpeed);
  void UpdateMeter(const AnalysisSettings& settings);
  void AgePeakHold();

  Fft fft_;
  // The upper half stays 0: every block is transformed with as many zeros behind it.
  std::array<int16_t, binCount> samples_{};
  std::array<float, binCount> realOut_{};
  ColumnPlan plan_;
  SpectrumPicture picture_;
  // One more than there are bins, for the one that does not exist.
  std::array<double, binCount + 1> heights_{};
  int32_t peakFrequency_ = 0;  // half the frequency in Hz
  int32_t shownPeak_ = 0;      // likewise
  int32_t peakHoldCounter_ = 0;
  int32_t dominantFrequencyHz_ = 0;
  int32_t waterRowCounter_ = 0;
  int32_t smeterLevelTwips_ = 0;
};

}  // namespace velt

#include "spectrum/analysis.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "spectrum/bulk_rounding.h"
#include "text/formats.h"
#include "text/numbers.h"

namespace velt {
namespace {

constexpr int32_t peakHoldTicks = 20;
constexpr int64_t smallestWhole = std::numeric_limits<int32_t>::min();
constexpr int64_t largestWhole = std::numeric_limits<int32_t>::max();

// The text for an audio frequency that is received at `rigFrequencyHz`: whole kilohertz of the
// sum, and behind the point two digits of the offset alone.
std::string PeakText(int32_t sumHz, int32_t offsetHz) {
  const std::string tens = AtLeastTwoDigits(offsetHz / 100);
  return std::to_string(sumHz / 1000) + "." + std::string(LastCharacters(tens, 2));
}

}  // namespace

Reading Analyser::Analyse(std::span<const int16_t, blockSamples> block,
                          const AnalysisSettings& settings, const Tuning& tuning,
                          const WaterPalette& palette, AnalysisOutput& output) {
  std::ranges::copy(block, samples_.begin());
  fft_.RunFFT(samples_, realOut_);
  plan_.Prepare(settings);

  Reading reading;
  const bool drawsSpectrum = output.display && !settings.waterfall;
  if (drawsSpectrum || output.columns) ComputeHeights(settings.spectrumDivisor);
  if (output.columns) {
    output.columns->clear();
    for (const Column& column : plan_.Columns()) {
      output.columns->push_back(heights_[column.p] + heights_[column.p1]);
    }
  }
  if (output.display) {
    for (Raster* raster : {&output.display->shown, &output.display->offScreen}) {
      raster->Resize(settings.plotWidth, settings.plotHeight, settings.background);
    }
  }
  if (drawsSpectrum) {
    picture_.Draw(plan_, settings, tuning.passband, heights_, samples_, output.display->offScreen);
  } else if (output.display) {
    reading.displayChanged = DrawWaterfallRow(settings, palette, output.display->shown);
  }
  if (settings.dominantPeak) reading.freqDetectText = FindPeak(settings, tuning.rigFrequencyHz);
  if (settings.waterfall && ScrollIsDue(settings.waterSpeed) && output.display) {
    output.display->shown.ScrollDown();
    reading.displayChanged = true;
  }
  UpdateMeter(settings);
  if (drawsSpectrum) {
    output.display->shown = output.display->offScreen;
    reading.displayChanged = true;
  }
  AgePeakHold();
  reading.dominantFrequencyHz = dominantFrequencyHz_;
  reading.smeterLevelTwips = smeterLevelTwips_;
  reading.silent = std::ranges::all_of(block, [](int16_t sample) { return sample == 0; });
  return reading;
}

void Analyser::DrawAgain(const AnalysisSettings& settings, Passband passband, Display& display) {
  picture_.Draw(plan_, settings, passband, heights_, samples_, display.offScreen);
  display.shown = display.offScreen;
}

// Only the bins that the plot shows. A block of 512 samples of 16 bits cannot reach 2^25 in any
// bin, so the whole numbers in here fit; and a quotient of whole numbers of 32 bits is never
// rounded up to the next whole one in double, so truncating it is exact.
void Analyser::ComputeHeights(int32_t divisor) {
  heights_[ColumnPlan::noBin] = std::numeric_limits<double>::quiet_NaN();
  const auto used = static_cast<size_t>(plan_.BinsUsed());
  if (divisor == 0) {
    std::ranges::fill(heights_, std::numeric_limits<double>::quiet_NaN());
    return;
  }
  for (size_t k = 0; k < used; ++k) {
    const double quotient = NearestWhole(realOut_[k]) / divisor;
    heights_[k] = std::sqrt(std::abs(static_cast<double>(static_cast<int32_t>(quotient))));
  }
}

bool Analyser::DrawWaterfallRow(const AnalysisSettings& settings, const WaterPalette& palette,
                                Raster& shown) const {
  const int64_t divisor = int64_t{settings.waterfallSensitivity} * 3;
  if (divisor == 0 || std::abs(divisor) > largestWhole || shown.Height() == 0) return false;
  const auto scale = static_cast<double>(divisor);
  const std::span<uint32_t> row = shown.Row(0);
  for (const Column& column : plan_.Columns()) {
    if (column.p == ColumnPlan::noBin || column.p1 == ColumnPlan::noBin) continue;
    const double sum = static_cast<double>(realOut_[column.p]) + realOut_[column.p1];
    const auto strength = static_cast<int32_t>(NearestWhole(std::abs(sum) / scale));
    const int index = strength % WaterPalette::shownCount;
    // A negative sensitivity names entries that do not exist.
    if (index < 0 || column.x < 0 || column.x >= shown.Width()) continue;
    row[static_cast<size_t>(column.x)] = palette[index].Argb();
  }
  return true;
}

// Of the columns that are at least as strong as all before them the last one counts; each of them
// may raise the shown peak.
std::optional<std::string> Analyser::FindPeak(const AnalysisSettings& settings,
                                              int32_t rigFrequencyHz) {
  const bool audioOnly = settings.zokaMode == 0;
  int64_t peakLevel = 0;
  double surelyLess = 0.0;
  std::optional<int32_t> shownOffsetHz;
  for (const Column& column : plan_.Columns()) {
    if (column.p == ColumnPlan::noBin) continue;
    const double strength = std::abs(realOut_[column.p]);
    // Most columns are ruled out by their square, without the root.
    if (strength < surelyLess) continue;
    const double level = std::sqrt(strength);
    if (static_cast<double>(peakLevel) > level) continue;
    peakLevel = static_cast<int64_t>(NearestWhole(level));
    surelyLess = static_cast<double>(peakLevel * peakLevel) * (1 - 1e-9);
    peakFrequency_ = column.peakFrequency;
    dominantFrequencyHz_ = 2 * peakFrequency_;
    if (peakFrequency_ < shownPeak_) continue;
    const int32_t offsetHz = audioOnly ? 2 * peakFrequency_ : 2 * peakFrequency_ - 12000;
    const int64_t sumHz = int64_t{rigFrequencyHz} + offsetHz;
    if (audioOnly || (sumHz >= smallestWhole && sumHz <= largestWhole)) shownOffsetHz = offsetHz;
    shownPeak_ = peakFrequency_;
  }
  if (!shownOffsetHz) return std::nullopt;
  if (audioOnly) return std::to_string(*shownOffsetHz) + "Hz";
  return PeakText(rigFrequencyHz + *shownOffsetHz, *shownOffsetHz);
}

bool Analyser::ScrollIsDue(int16_t waterSpeed) {
  ++waterRowCounter_;
  if (waterRowCounter_ <= waterSpeed) return false;
  waterRowCounter_ = 0;
  return true;
}

void Analyser::UpdateMeter(const AnalysisSettings& settings) {
  int64_t sum = 0;
  for (const Column& column : plan_.Columns()) {
    if (column.p == ColumnPlan::noBin) continue;
    // Each addition is rounded, halves to even. Whole and rest apart: no digit of the rest is lost
    // however large the sum is.
    const double part = std::abs(static_cast<double>(realOut_[column.p])) * plan_.Step();
    const auto whole = static_cast<int64_t>(part);
    const double rest = part - static_cast<double>(whole);
    const int64_t below = sum + whole;
    const int64_t next = below + (rest > 0.5 ? 1 : 0) + ((rest == 0.5 ? 1 : 0) & below);
    if (next <= largestWhole) sum = next;
  }
  const std::optional<int32_t> scaled =
      RoundHalfEven(static_cast<double>(sum) * settings.meterSensitivity);
  if (!scaled) return;
  const std::optional<int32_t> level = DivideTruncating(*scaled, settings.plotWidth);
  if (level && *level != std::numeric_limits<int32_t>::min()) smeterLevelTwips_ = std::abs(*level);
}

void Analyser::AgePeakHold() {
  ++peakHoldCounter_;
  if (peakHoldCounter_ <= peakHoldTicks) return;
  shownPeak_ = 0;
  peakHoldCounter_ = 0;
}

}  // namespace velt

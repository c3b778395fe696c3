#include "spectrum/spectrogram.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "spectrum/bulk_rounding.h"

namespace velt {
namespace {

constexpr double kRateHz = 44100.0;
constexpr double kBinHz = kRateHz / Fft::kSize;
// A sine of full scale on a bin reaches 32768 * 1024 / 2, and half of that through the cosine.
constexpr double kFullScalePower = 0x1p46;
constexpr double kLevels = 255.0;

double Decibels(float power) {
  return 10.0 * std::log10(std::max<double>(power, 1e-3) / kFullScalePower);
}

uint8_t LevelOf(float power) {
  const double level = (1.0 - Decibels(power) / spectrogramFloorDb) * kLevels;
  return static_cast<uint8_t>(std::clamp(NearestWhole(level), 0.0, kLevels));
}

// For each place of a row of `size` the first and the last of `all` that fall on it.
std::vector<std::pair<int, int>> Sources(int size, int all) {
  std::vector<std::pair<int, int>> sources;
  for (int64_t at = 0; at < size; ++at) {
    const int64_t first = at * all / size;
    const int64_t last = ((at + 1) * all + size - 1) / size - 1;
    sources.emplace_back(static_cast<int>(first), static_cast<int>(all > size ? last : first));
  }
  return sources;
}

}  // namespace

LevelPlot::LevelPlot(int width, int height)
    : width_(std::max(width, 1)),
      height_(std::max(height, 1)),
      levels_(Columns() * static_cast<size_t>(height_)) {}

LevelPlot LevelPlot::Fitted(int width, int height) const {
  LevelPlot fitted(width, height);
  if (levels_.empty()) return fitted;
  const auto columns = Sources(fitted.Width(), width_);
  const auto rows = Sources(fitted.Height(), height_);
  std::vector<uint8_t> strongest;
  for (int y = 0; y < fitted.Height(); ++y) {
    const auto [first, last] = rows[static_cast<size_t>(y)];
    strongest.assign(Row(first).begin(), Row(first).end());
    for (int from = first + 1; from <= last; ++from) {
      std::ranges::transform(strongest, Row(from), strongest.begin(),
                             [](uint8_t a, uint8_t b) { return std::max(a, b); });
    }
    uint8_t* to = fitted.Row(y).data();
    for (const auto& [left, right] : columns) {
      *to++ = *std::max_element(strongest.begin() + left, strongest.begin() + right + 1);
    }
  }
  return fitted;
}

Spectrogram::Spectrogram(int width, int height, int64_t blocks, double topHz)
    : plot_(width, height),
      looks_(std::max<int64_t>(blocks - 1, 1)),
      topHz_(std::clamp(topHz, kBinHz, kRateHz / 2)),
      column_(static_cast<size_t>(plot_.Height())) {
  const double bins = topHz_ / kBinHz;
  const int rows = plot_.Height();
  const auto held = [](double bin) {
    return static_cast<uint16_t>(std::clamp(bin, 0.0, static_cast<double>(binCount - 1)));
  };
  for (int row = rows - 1; row >= 0; --row) {
    if (bins >= rows) {
      binsOfRow_.emplace_back(held(std::floor(row * bins / rows)),
                              held(std::ceil((row + 1) * bins / rows) - 1));
    } else {
      const uint16_t nearest = held(std::floor((row + 0.5) * bins / rows + 0.5));
      binsOfRow_.emplace_back(nearest, nearest);
    }
  }
}

void Spectrogram::Add(std::span<const int16_t, blockSamples> block) {
  const auto middle = samples_.begin() + blockSamples;
  std::ranges::copy(block, std::copy(middle, samples_.end(), samples_.begin()));
  if (++added_ > 1) Look();
}

void Spectrogram::Finish() {
  if (added_ == 1) Look();
  CompleteColumns();
}

void Spectrogram::Look() {
  if (look_ < looks_ && ColumnOf(look_) > firstColumn_) {
    CompleteColumns();
    firstColumn_ = ColumnOf(look_);
    powers_.fill(0);
  }
  ++look_;
  fft_.RunFFT(samples_, realOut_);
  // The raised cosine over the samples is this sum over neighbouring bins.
  const float* const re = realOut_.data();
  const float* const im = fft_.ImagOut().data();
  float* const powers = powers_.data();
  const auto raise = [re, im, powers](size_t below, size_t k) {
    const float real = 0.5F * re[k] - 0.25F * (re[below] + re[k + 1]);
    const float imaginary = 0.5F * im[k] - 0.25F * (im[below] + im[k + 1]);
    const float power = real * real + imaginary * imaginary;
    powers[k] = powers[k] < power ? power : powers[k];
  };
  raise(Fft::kSize - 1, 0);
  for (size_t k = 1; k < binCount; ++k) raise(k - 1, k);
}

void Spectrogram::CompleteColumns() {
  // At both ends of the band the two halves of a sine fall together.
  powers_.front() /= 4;
  powers_.back() /= 4;
  const int end = look_ < looks_ ? ColumnOf(look_) : plot_.Width();
  size_t row = 0;
  for (const auto& [first, last] : binsOfRow_) {
    column_[row++] =
        LevelOf(*std::max_element(powers_.begin() + first, powers_.begin() + last + 1));
  }
  for (int y = 0; y < plot_.Height(); ++y) {
    const std::span<uint8_t> levels = plot_.Row(y);
    for (int x = firstColumn_; x < std::max(end, firstColumn_ + 1); ++x) {
      levels[static_cast<size_t>(x)] = column_[static_cast<size_t>(y)];
    }
  }
  const auto strongest = std::ranges::max_element(powers_);
  if (*strongest > strongestPower_) {
    strongestPower_ = *strongest;
    strongestBin_ = static_cast<size_t>(strongest - powers_.begin());
    strongestLook_ = look_ - 1;
  }
}

int Spectrogram::ColumnOf(int64_t look) const {
  return static_cast<int>(look * plot_.Width() / looks_);
}

Spectrogram::Strongest Spectrogram::Peak() const {
  return {
      .levelDb = Decibels(strongestPower_),
      .frequencyHz = static_cast<double>(strongestBin_) * kBinHz,
      .seconds =
          static_cast<double>((strongestLook_ + 1) * static_cast<int64_t>(blockSamples)) / kRateHz};
}

}  // namespace velt

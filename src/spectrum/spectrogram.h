// A recording as one picture of levels: time to the right, frequency upward.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "spectrum/fft.h"

namespace velt {

// Levels from 0 (spectrogramFloorDb or less) to 255 (0 dB) in equal steps; rows from top to bottom
// without gaps between them.
class LevelPlot {
 public:
  LevelPlot() = default;
  // At least one pixel each way; all levels 0.
  LevelPlot(int width, int height);

  int Width() const { return width_; }
  int Height() const { return height_; }
  std::span<uint8_t> Row(int y) {
    return std::span(levels_).subspan(static_cast<size_t>(y) * Columns(), Columns());
  }
  std::span<const uint8_t> Row(int y) const {
    return std::span(levels_).subspan(static_cast<size_t>(y) * Columns(), Columns());
  }

  // The same in another size. Where it shrinks, each pixel is the strongest of all that fall on it:
  // what is short or narrow is not lost.
  LevelPlot Fitted(int width, int height) const;

 private:
  size_t Columns() const { return static_cast<size_t>(width_); }

  int width_ = 0;
  int height_ = 0;
  std::vector<uint8_t> levels_;
};

// 0 dB is a sine of full scale. Well below what 16 bits of noise reach in one bin.
inline constexpr double spectrogramFloorDb = -100.0;

// Takes a sound block by block; memory depends on the picture alone. Each look is at two neighbours
// through a raised cosine, so that a strong signal does not cover the weak ones beside it; as every
// block is looked at twice, no signal is so short that it falls between the looks. (Beyond its ends
// nothing is made up: silence there would be a click in the picture that nobody has heard.)
class Spectrogram {
 public:
  static constexpr size_t blockSamples = 512;

  // `blocks` (at least 1) is how many will come. Frequencies go from 0 to `topHz`, at most half the
  // rate of 44100 samples per second.
  Spectrogram(int width, int height, int64_t blocks, double topHz);

  // What comes beyond the announced number falls on the last column.
  void Add(std::span<const int16_t, blockSamples> block);
  // After the last block. Where blocks are missing the lowest level stays.
  void Finish();

  const LevelPlot& Plot() const { return plot_; }
  double TopHz() const { return topHz_; }

  // The strongest of all, valid after Finish.
  struct Strongest {
    double levelDb = spectrogramFloorDb;  // of silence: far below the floor
    double frequencyHz = 0.0;
    double seconds = 0.0;  // from the first block on, to a column of the plot
  };
  Strongest Peak() const;

 private:
  static constexpr size_t binCount = Fft::kSize / 2 + 1;

  void Look();
  void CompleteColumns();
  int ColumnOf(int64_t look) const;

  LevelPlot plot_;
  int64_t looks_;
  double topHz_;
  Fft fft_;
  alignas(64) std::array<int16_t, Fft::kSize> samples_{};  // the last two blocks
  alignas(64) std::array<float, Fft::kSize> realOut_{};
  // The strongest powers of the looks at the columns that are not complete yet.
  alignas(64) std::array<float, binCount> powers_{};
  std::vector<uint8_t> column_;                           // from top to bottom
  std::vector<std::pair<uint16_t, uint16_t>> binsOfRow_;  // first and last
  int firstColumn_ = 0;
  int64_t added_ = 0;  // blocks
  int64_t look_ = 0;
  float strongestPower_ = 0;
  size_t strongestBin_ = 0;
  int64_t strongestLook_ = 0;
};

}  // namespace velt

// The transform of the analyser: 1024 samples of 16 bits into a complex spectrum of 1024 bins.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "spectrum/fft_kernels.h"

namespace velt {

// The lowest `numBits` bits (0 to 31) of `index` (0 or more) in reverse order.
int32_t ReverseBits(int32_t index, uint8_t numBits);

// Which processors the loops are written for; the outputs are the same, bit for bit.
enum class FftPath { Baseline, Avx2 };

inline constexpr std::array kFftPaths{FftPath::Baseline, FftPath::Avx2};

// Whether this processor, under this operating system, can run that path.
bool FftPathAvailable(FftPath path);

// Radix-2 transform, decimation in time, in single precision with extended intermediates. Twiddle
// factors come from a trigonometric recurrence with a 2 pi of six decimals, so they drift from the
// exact ones by up to some 1e-5. One object serves one thread at a time.
class Fft {
 public:
  static constexpr int kSize = kFftSize;

  // On the fastest path the processor has.
  Fft();
  // On a path that is available.
  explicit Fft(FftPath path);

  // Bin k of the result is the sum over n of samples[n] * e^(+2 pi i k n / 1024): not normalised,
  // no window, mean not removed, the angle turning in the positive sense. The real parts go to
  // `realOut`, the imaginary parts to ImagOut(). A full-scale sine on a bin reaches 32767 * 512.
  void RunFFT(std::span<const int16_t, kSize> samples, std::span<float, kSize> realOut);

  // Imaginary parts of the last transform; zeros before the first.
  std::span<const float, kSize> ImagOut() const { return imaginary_; }

 private:
  void InitBitReverse();
  void InitTwiddles();

  FftTables tables_;
  alignas(64) std::array<float, kSize> imaginary_{};
  FftKernel kernel_;
};

}  // namespace velt

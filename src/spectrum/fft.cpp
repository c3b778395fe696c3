#include "spectrum/fft.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velt {
namespace {

// The coefficients depend on these digits: more of them would change the spectrum's last bits.
constexpr double kTwoPi = 6.283185;
constexpr uint8_t kIndexBits = 10;

static_assert(1 << kIndexBits == kFftSize);

FftPath FastestPath() {
  return *std::find_if(kFftPaths.rbegin(), kFftPaths.rend(), FftPathAvailable);
}

FftKernel KernelOf(FftPath path) {
  switch (path) {
    case FftPath::Avx2:
      return TransformAvx2;
    case FftPath::Baseline:
      break;
  }
  return TransformBaseline;
}

}  // namespace

int32_t ReverseBits(int32_t index, uint8_t numBits) {
  int32_t reversed = 0;
  for (int bit = 0; bit < numBits; ++bit) {
    reversed = reversed * 2 | (index & 1);
    index /= 2;
  }
  return reversed;
}

bool FftPathAvailable(FftPath path) {
  switch (path) {
    case FftPath::Avx2:
      return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    case FftPath::Baseline:
      break;
  }
  return true;
}

Fft::Fft() : Fft(FastestPath()) {}

Fft::Fft(FftPath path) : kernel_(KernelOf(path)) {
  InitBitReverse();
  InitTwiddles();
}

void Fft::InitBitReverse() {
  for (int32_t i = 0; i < kSize; ++i) tables_.bitReverse[i] = ReverseBits(i, kIndexBits);
}

// Every coefficient and twiddle is stored as a single, every expression is extended: both show in
// the last bits of the spectrum. The twiddles start anew in each group of a stage, so one run of
// the recurrence a stage serves all groups.
void Fft::InitTwiddles() {
  for (int half = 1; half < kSize; half *= 2) {
    const float step = static_cast<float>(static_cast<long double>(kTwoPi) / (2 * half));
    const long double halfStepSine = std::sin(static_cast<long double>(step) * 0.5L);
    const long double alpha = static_cast<float>((halfStepSine + halfStepSine) * halfStepSine);
    const long double beta = static_cast<float>(std::sin(static_cast<long double>(step)));
    float c = 1;
    float s = 0;
    for (int n = 0; n < half; ++n) {
      tables_.cosine[half + n] = c;
      tables_.sine[half + n] = s;
      const float change = static_cast<float>(alpha * c + beta * s);
      s = static_cast<float>(s - (alpha * s - beta * c));
      c = static_cast<float>(static_cast<long double>(c) - change);
    }
  }
  tables_.cosine[0] = tables_.sine[0] = 0;
}

void Fft::RunFFT(std::span<const int16_t, kSize> samples, std::span<float, kSize> realOut) {
  kernel_(tables_, samples.data(), realOut.data(), imaginary_.data());
}

}  // namespace velt

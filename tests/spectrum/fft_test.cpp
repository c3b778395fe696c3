#include "spectrum/fft.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <numbers>
#include <random>

namespace velt {
namespace {

constexpr int kSize = Fft::kSize;
using Samples = std::array<int16_t, kSize>;

// The real parts, then the imaginary ones.
using Spectrum = std::array<float, 2 * kSize>;

// The transform step by step, with extended intermediates.
Spectrum StepByStep(const Samples& samples) {
  using Wide = long double;
  Spectrum out{};
  float *re = out.data(), *im = re + kSize;
  for (int i = 0; i < kSize; ++i) re[ReverseBits(i, 10)] = samples[i];
  const auto single = [](auto value) { return static_cast<float>(value); };
  for (int h = 1; h < kSize; h *= 2) {
    const float d = single(6.283185 / (2 * h));
    const Wide sine = sinl(d * 0.5L);
    const Wide alpha = single((sine + sine) * sine);
    const Wide beta = single(sinl(d));
    float c = 1, s = 0;
    for (int n = 0; n < h; ++n) {
      for (int j = n; j < kSize; j += 2 * h) {
        const int k = j + h;
        const float tempR = single(Wide{re[k]} * c - Wide{im[k]} * s);
        const float tempI = single(Wide{re[k]} * s + Wide{im[k]} * c);
        re[k] = single(Wide{re[j]} - tempR);
        im[k] = single(Wide{im[j]} - tempI);
        re[j] = single(Wide{re[j]} + tempR);
        im[j] = single(Wide{im[j]} + tempI);
      }
      const Wide t = single(alpha * c + beta * s);
      s = single(s - (alpha * s - beta * c));
      c = single(c - t);
    }
  }
  return out;
}

TEST(Fft, EveryBitIsThatOfExtendedPrecision) {
  std::mt19937 random(20240607);
  std::uniform_real_distribution<double> share;
  for (int block = 0; block < 4000; ++block) {
    const double level = std::pow(32767, share(random)), turn = std::numbers::pi * share(random);
    Samples samples{};
    // Every other time, as the analyser has it, the second half is empty.
    const int filled = block % 8 < 4 ? kSize : kSize / 2;
    for (int i = 0; i < filled; ++i) {
      const double noise = level * (2 * share(random) - 1);
      const std::array kinds{noise, level * std::sin(turn * i), noise < 0 ? -32768.0 : 32767.0,
                             random() % 256 == 0 ? noise : 0.0};
      samples[i] = static_cast<int16_t>(std::lround(kinds[block % 4]));
    }
    const Spectrum expected = StepByStep(samples);
    for (const FftPath path : kFftPaths) {
      if (!FftPathAvailable(path)) continue;
      Fft fft(path);
      std::array<float, 2 * kSize + 1> unaligned{};
      fft.RunFFT(samples, std::span(unaligned).subspan<1, kSize>());
      std::ranges::copy(fft.ImagOut(), unaligned.begin() + 1 + kSize);
      // Bit by bit: signs of zeros count.
      ASSERT_EQ(std::memcmp(&unaligned[1], expected.data(), sizeof expected), 0) << block;
    }
  }
}

}  // namespace
}  // namespace velt

#include "spectrum/fft.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <numbers>
#include <random>

namespace velt {
namespace {

constexpr int kSize = Fft::kSize;
using Samples = std::array<int16_t, kSize>;

// The real parts, then the imaginary ones, bit by bit: signs of zeros count.
using Spectrum = std::array<uint32_t, 2 * kSize>;

// The transform step by step, with extended intermediates.
Spectrum StepByStep(const Samples& samples) {
  using Wide = long double;
  std::array<float, 2 * kSize> out{};
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
  return std::bit_cast<Spectrum>(out);
}

// Full-scale noise that is the same with every library.
Samples SeededNoise(uint64_t state) {
  Samples samples;
  for (int16_t& sample : samples) {
    state = state * 6364136223846793005u + 1442695040888963407u;
    sample = static_cast<int16_t>(state >> 48);
  }
  return samples;
}

Spectrum Run(FftPath path, const Samples& samples) {
  Fft fft(path);
  std::array<float, 2 * kSize + 1> unaligned{};
  fft.RunFFT(samples, std::span(unaligned).subspan<1, kSize>());
  std::ranges::copy(fft.ImagOut(), unaligned.begin() + 1 + kSize);
  Spectrum out;
  std::memcpy(&out, &unaligned[1], sizeof out);
  return out;
}

void ExpectExtendedPrecision(const Samples& samples) {
  const Spectrum expected = StepByStep(samples);
  for (const FftPath path : kFftPaths) {
    if (!FftPathAvailable(path)) continue;
    ASSERT_EQ(Run(path, samples), expected) << "path " << static_cast<int>(path);
  }
}

TEST(Fft, EveryBitIsThatOfExtendedPrecision) {
  std::mt19937 random(20240607);
  std::uniform_real_distribution<double> share;
  for (int block = 0; block < 4000; ++block) {
    const double level = std::pow(32767, share(random)), turn = std::numbers::pi * share(random);
    const auto sample = [&](int i) {
      const double noise = level * (2 * share(random) - 1);
      return std::array{noise, level * std::sin(turn * i), noise < 0 ? -32768.0 : 32767.0,
                        random() % 256 == 0 ? noise : 0.0}[block % 4];
    };
    Samples samples{};
    // Every other time, as the analyser has it, the second half is empty.
    const int filled = block % 8 < 4 ? kSize : kSize / 2;
    for (int i = 0; i < filled; ++i) samples[i] = static_cast<int16_t>(std::lround(sample(i)));
    ASSERT_NO_FATAL_FAILURE(ExpectExtendedPrecision(samples)) << "block " << block;
  }
}

// Blocks found by search, in which a double lands halfway between two singles though the sum it
// stands for does not.
TEST(Fft, DoublesThatMisleadAreDoneAgain) {
  for (const uint64_t seed : {3029988u, 10082457u, 1005042323u}) {
    ExpectExtendedPrecision(SeededNoise(seed));
  }
}

}  // namespace
}  // namespace velt

#include "spectrum/fft.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <complex>
#include <cstdint>
#include <functional>
#include <memory>
#include <numbers>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace velt {
namespace {

constexpr int kSize = Fft::kSize;
using Samples = std::array<int16_t, kSize>;

struct Spectrum {
  std::array<float, kSize> real{};
  std::array<float, kSize> imaginary{};
};

struct Twiddle {
  float c;
  float s;
};
// That of step n in the stage with half size h stands at h + n.
using Twiddles = std::array<Twiddle, kSize>;

const Twiddles& Recurrence() {
  static const Twiddles twiddles = [] {
    const auto single = [](long double value) { return static_cast<float>(value); };
    Twiddles made{};
    for (int h = 1; h < kSize; h *= 2) {
      const float d = single(6.283185 / (2 * h));
      const long double sine = sinl(d * 0.5L);
      const long double alpha = single((sine + sine) * sine);
      const long double beta = single(sinl(d));
      Twiddle at{1, 0};
      for (int n = 0; n < h; ++n) {
        made[h + n] = at;
        const long double t = single(alpha * at.c + beta * at.s);
        at = {single(at.c - t), single(at.s - (alpha * at.s - beta * at.c))};
      }
    }
    return made;
  }();
  return twiddles;
}

// The transform step by step, intermediates of type Wide.
template <class Wide>
Spectrum StepByStep(const Samples& samples, const Twiddles& twiddles = Recurrence()) {
  Spectrum out;
  auto& [re, im] = out;
  for (int i = 0; i < kSize; ++i) re[ReverseBits(i, 10)] = samples[i];
  const auto single = [](Wide value) { return static_cast<float>(value); };
  for (int h = 1; h < kSize; h *= 2) {
    for (int i = 0; i < kSize; i += 2 * h) {
      for (int n = 0; n < h; ++n) {
        const int j = i + n;
        const int k = j + h;
        const auto [c, s] = twiddles[h + n];
        const float tempR = single(Wide{re[k]} * c - Wide{im[k]} * s);
        const float tempI = single(Wide{re[k]} * s + Wide{im[k]} * c);
        re[k] = single(Wide{re[j]} - tempR);
        im[k] = single(Wide{im[j]} - tempI);
        re[j] = single(Wide{re[j]} + tempR);
        im[j] = single(Wide{im[j]} + tempI);
      }
    }
  }
  return out;
}

// Number of outputs whose bits differ, signs of zeros included.
int Differences(const Spectrum& a, const Spectrum& b) {
  const auto different = [](float x, float y) {
    return std::bit_cast<uint32_t>(x) != std::bit_cast<uint32_t>(y);
  };
  int count = 0;
  for (int k = 0; k < kSize; ++k) {
    count += different(a.real[k], b.real[k]) + different(a.imaginary[k], b.imaginary[k]);
  }
  return count;
}

Samples Filled(const std::function<double(int)>& value) {
  Samples samples;
  for (int i = 0; i < kSize; ++i) samples[i] = static_cast<int16_t>(std::lround(value(i)));
  return samples;
}

// Full-scale noise that is the same with every library.
Samples SeededNoise(uint64_t state) {
  return Filled([&state](int) {
    state = state * 6364136223846793005u + 1442695040888963407u;
    return static_cast<int16_t>(state >> 48);
  });
}

class FftPaths : public testing::TestWithParam<FftPath> {
 protected:
  void SetUp() override {
    if (!FftPathAvailable(GetParam())) GTEST_SKIP() << "this processor has no such instructions";
  }

  // Into an array at an odd address with guards on both sides.
  Spectrum Run(Fft& fft, const Samples& samples) {
    constexpr float kGuard = -12345.5f;
    constexpr size_t kMargin = 17;
    std::vector<float> buffer(kSize + 2 * kMargin, kGuard);
    const std::span<float, kSize> real(buffer.data() + kMargin, kSize);
    fft.RunFFT(samples, real);
    EXPECT_EQ(std::count(buffer.begin(), buffer.begin() + kMargin, kGuard), kMargin);
    EXPECT_EQ(std::count(buffer.end() - kMargin, buffer.end(), kGuard), kMargin);
    Spectrum out;
    std::ranges::copy(real, out.real.begin());
    std::ranges::copy(fft.ImagOut(), out.imaginary.begin());
    return out;
  }
};

INSTANTIATE_TEST_SUITE_P(Fft, FftPaths, testing::ValuesIn(kFftPaths),
                         [](const testing::TestParamInfo<FftPath>& path) {
                           return path.param == FftPath::Avx2 ? "Avx2" : "Baseline";
                         });

TEST_P(FftPaths, EveryBitIsThatOfExtendedPrecision) {
  Fft fft(GetParam());
  std::mt19937 random(20240607);
  const auto uniform = [&random](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  const auto noise = [&](double level) {
    return Filled([&](int) { return uniform(-level, level); });
  };
  const auto sine = [&] {
    const double step = uniform(0, std::numbers::pi);
    const double level = std::exp(uniform(0, std::log(32767)));
    return Filled([&](int i) { return level * std::sin(step * i); });
  };
  struct Signal {
    const char* name;
    std::function<Samples()> make;
  };
  const Signal signals[] = {
      {"noise of 1", [&] { return noise(1.49); }},
      {"noise of 5", [&] { return noise(5); }},
      {"noise of 100", [&] { return noise(100); }},
      {"noise of 3000", [&] { return noise(3000); }},
      {"full-scale noise", [&] { return noise(32767.49); }},
      {"only the extremes",
       [&] { return Filled([&](int) { return random() % 2 ? 32767 : -32768; }); }},
      {"sine", sine},
      {"step",
       [&] {
         const int at = static_cast<int>(random() % kSize);
         const double low = uniform(-32768, 32767), high = uniform(-32768, 32767);
         return Filled([&](int i) { return i < at ? low : high; });
       }},
      {"impulses",
       [&] {
         Samples samples{};
         for (uint32_t n = random() % 4 + 1; n > 0; --n) {
           samples[random() % kSize] = static_cast<int16_t>(random());
         }
         return samples;
       }},
  };
  for (const Signal& signal : signals) {
    for (int block = 0; block < 500; ++block) {
      Samples samples = signal.make();
      if (block % 2 == 1) std::fill(samples.begin() + kSize / 2, samples.end(), int16_t{0});
      ASSERT_EQ(Differences(Run(fft, samples), StepByStep<long double>(samples)), 0)
          << signal.name << ", block " << block;
    }
  }
}

// Blocks found by search, in which a double lands halfway between two singles though the sum it
// stands for does not.
TEST_P(FftPaths, DoublesThatMisleadAreDoneAgain) {
  Fft fft(GetParam());
  for (const uint64_t seed : {3029988u, 10082457u, 1005042323u}) {
    const Samples samples = SeededNoise(seed);
    const Spectrum expected = StepByStep<long double>(samples);
    EXPECT_NE(Differences(StepByStep<double>(samples), expected), 0) << "proves nothing: " << seed;
    EXPECT_EQ(Differences(Run(fft, samples), expected), 0) << seed;
  }
}

// The same in every stage and lane. Quarter turns keep the values small whole numbers; then one
// stage multiplies by c = 1 + 2^-23, and 3c lies halfway between two singles, but for the 2^-60 of
// s.
TEST_P(FftPaths, MisleadingDoublesAreFoundInEveryLane) {
  const FftKernel kernel = GetParam() == FftPath::Avx2 ? TransformAvx2 : TransformBaseline;
  const auto tables = std::make_unique<FftTables>();
  for (int i = 0; i < kSize; ++i) tables->bitReverse[i] = ReverseBits(i, 10);
  std::mt19937 random(7);
  int misled[8][2] = {};
  for (int half = 4; half < kSize; half *= 2) {
    for (const float s : {0x1p-60f, -0x1p-60f}) {
      for (int lane = 0; lane < 8; ++lane) {
        Twiddles twiddles;
        for (int h = 1; h < kSize; h *= 2) {
          for (int n = 0; n < h; ++n) {
            const bool misleading = h == half && n % 8 == lane && n != 0;
            const bool turn = h < half && n != 0 && random() % 2 == 0;
            twiddles[h + n] = misleading ? Twiddle{1 + 0x1p-23f, s}
                              : turn     ? Twiddle{0, 1}
                                         : Twiddle{1, 0};
            tables->cosine[h + n] = twiddles[h + n].c;
            tables->sine[h + n] = twiddles[h + n].s;
          }
        }
        const Samples samples = Filled(
            [&](int) { return random() % half < 8 ? static_cast<int>(random() % 7) - 3 : 0; });
        const Spectrum expected = StepByStep<long double>(samples, twiddles);
        misled[lane][s > 0] += Differences(StepByStep<double>(samples, twiddles), expected);
        Spectrum out;
        kernel(*tables, samples.data(), out.real.data(), out.imaginary.data());
        ASSERT_EQ(Differences(out, expected), 0) << "half " << half << ", lane " << lane;
      }
    }
  }
  for (const auto& [negative, positive] : misled) {
    EXPECT_GT(negative, 0);
    EXPECT_GT(positive, 0);
  }
}

TEST_P(FftPaths, SilenceIsZeroAndAConstantStaysInTheFirstBin) {
  Fft fft(GetParam());
  for (const int value : {0, 1, -7, 32767, -32768}) {
    const Spectrum out = Run(fft, Filled([&](int) { return value; }));
    EXPECT_EQ(out.real[0], 1024.0f * static_cast<float>(value));
    EXPECT_EQ(out.imaginary[0], 0);
    for (int k = 1; k < kSize; ++k) {
      ASSERT_EQ(std::abs(out.real[k]) + std::abs(out.imaginary[k]), 0) << value << " in bin " << k;
    }
  }
}

TEST_P(FftPaths, AgreesWithTheExactTransformWithinTheDriftOfTheTwiddles) {
  Fft fft(GetParam());
  std::vector<std::complex<double>> turns;
  for (int n = 0; n < kSize; ++n) {
    turns.push_back(std::polar(1.0, 2 * std::numbers::pi * n / kSize));
  }
  for (uint64_t seed = 1; seed <= 4; ++seed) {
    const Samples samples = SeededNoise(seed);
    const Spectrum out = Run(fft, samples);
    double energy = 0;
    for (const int16_t sample : samples) energy += static_cast<double>(sample) * sample;
    for (int k = 0; k < kSize; ++k) {
      std::complex<double> exact = 0;
      for (int n = 0; n < kSize; ++n)
        exact += turns[k * n % kSize] * static_cast<double>(samples[n]);
      const std::complex<double> found(out.real[k], out.imaginary[k]);
      ASSERT_LT(std::abs(found - exact), 2e-5 * std::sqrt(energy)) << "bin " << k;
    }
  }
}

TEST_P(FftPaths, AFullScaleSineFillsItsBinAndTurnsInThePositiveSense) {
  Fft fft(GetParam());
  for (const int bin : {1, 37, 256, 400, 511}) {
    const Spectrum out = Run(fft, Filled([&](int i) {
                               return 32767 * std::sin(2 * std::numbers::pi * bin * i / kSize);
                             }));
    EXPECT_NEAR(out.imaginary[bin], 32767.0 * 512, 500) << bin;
    EXPECT_NEAR(out.real[bin], 0, 500) << bin;
    EXPECT_NEAR(out.imaginary[kSize - bin], -32767.0 * 512, 500) << bin;
  }
}

TEST(Fft, ReversesBits) {
  struct Case {
    int32_t index;
    uint8_t bits;
    int32_t reversed;
  };
  for (const Case& c : {Case{0, 10, 0},
                        {1, 10, 512},
                        {3, 10, 768},
                        {1023, 10, 1023},
                        {0b1011000101, 10, 0b1010001101},
                        {6, 3, 3},
                        {5, 0, 0}}) {
    EXPECT_EQ(ReverseBits(c.index, c.bits), c.reversed) << c.index;
  }
}

}  // namespace
}  // namespace velt

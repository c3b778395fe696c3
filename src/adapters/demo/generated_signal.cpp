#include "adapters/demo/generated_signal.h"

#include <cmath>
#include <numbers>
#include <string_view>

#include "ports/audio_input.h"

namespace velt {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kTurnOf32Bits = 4294967296.0;

// Fine enough to keep what it adds far below the noise.
constexpr uint32_t kSineBits = 12;

constexpr std::string_view kMorse = "-.-. --.- -.-. --.-";  // CQ CQ
constexpr int kPauseDots = 14;
constexpr uint64_t kDotSamples = kSampleRateHz * 6 / 100;  // 20 words a minute

// A key that switched at once would be heard, and seen, over the whole band.
constexpr uint64_t kEdgeSamples = kSampleRateHz * 6 / 1000;

std::vector<bool> KeyedDots() {
  std::vector<bool> dots;
  for (const char c : kMorse) {
    if (c == ' ') {
      dots.insert(dots.end(), 2, false);
    } else {
      dots.insert(dots.end(), c == '-' ? 3 : 1, true);
      dots.push_back(false);
    }
  }
  dots.insert(dots.end(), kPauseDots, false);
  return dots;
}

std::vector<float> SineTurn() {
  std::vector<float> turn(size_t{1} << kSineBits);
  for (size_t i = 0; i < turn.size(); ++i) {
    turn[i] = static_cast<float>(
        std::sin(kTurn * (static_cast<double>(i) + 0.5) / static_cast<double>(turn.size())));
  }
  return turn;
}

}  // namespace

GeneratedSignal::GeneratedSignal(uint64_t seed)
    : seed_(seed), keyed_(KeyedDots()), sine_(SineTurn()) {}

std::string GeneratedSignal::Open() {
  position_ = 0;
  return "";
}

bool GeneratedSignal::Read(std::span<int16_t> samples) {
  for (int16_t& sample : samples) {
    sample = static_cast<int16_t>(std::lrint(Sample(position_++)));
  }
  return true;
}

bool GeneratedSignal::Skip(uint64_t samples) {
  position_ += samples;
  return true;
}

double GeneratedSignal::Sample(uint64_t number) const {
  double sum = Noise(number) + Drifting(number);
  for (const Carrier& carrier : kSteady) {
    sum += carrier.amplitude * Wave(carrier.frequencyHz, number);
  }
  const double keying = Keying(number);
  if (keying > 0) sum += keying * kKeyed.amplitude * Wave(kKeyed.frequencyHz, number);
  return sum;
}

// Phases are whole numbers of 32 bits to the turn, so that they stay exact however far it goes.
double GeneratedSignal::Wave(double frequencyHz, uint64_t number) const {
  const auto step = static_cast<uint64_t>(frequencyHz / kSampleRateHz * kTurnOf32Bits);
  return sine_[static_cast<uint32_t>(step * number) >> (32 - kSineBits)];
}

// 0 with the key up, 1 with the key down, in between at the edges.
double GeneratedSignal::Keying(uint64_t number) const {
  const uint64_t dot = number / kDotSamples;
  const uint64_t sinceDot = number % kDotSamples;
  const bool now = keyed_[dot % keyed_.size()];
  const bool before = keyed_[(dot + keyed_.size() - 1) % keyed_.size()];
  if (now == before || sinceDot >= kEdgeSamples) return now ? 1 : 0;
  const double done = static_cast<double>(sinceDot) / kEdgeSamples;
  const double rise = (1 - std::cos(std::numbers::pi * done)) / 2;
  return now ? rise : 1 - rise;
}

double GeneratedSignal::Drifting(uint64_t number) const {
  // The phase is the integral of a frequency that swings as a sine.
  constexpr auto kPeriod = static_cast<uint64_t>(kDriftSeconds * kSampleRateHz);
  const double swing = kTurn * static_cast<double>(number % kPeriod) / kPeriod;
  const double turns = kDriftHz * kDriftSeconds / kTurn * (1 - std::cos(swing));
  constexpr auto kStep =
      static_cast<uint64_t>(kDrifting.frequencyHz / kSampleRateHz * kTurnOf32Bits);
  const auto phase =
      static_cast<uint32_t>(kStep * number + static_cast<uint64_t>(turns * kTurnOf32Bits));
  return kDrifting.amplitude * sine_[phase >> (32 - kSineBits)];
}

// Four uniform numbers of 16 bits from a mix of the sample's number: near enough to a normal
// distribution, and no state to carry.
double GeneratedSignal::Noise(uint64_t number) const {
  uint64_t mix = seed_ + (number + 1) * 0x9E3779B97F4A7C15U;
  mix = (mix ^ (mix >> 30U)) * 0xBF58476D1CE4E5B9U;
  mix = (mix ^ (mix >> 27U)) * 0x94D049BB133111EBU;
  mix ^= mix >> 31U;
  double sum = 0;
  for (uint64_t rest = mix, part = 0; part < 4; ++part, rest >>= 16U) {
    sum += static_cast<double>(rest & 0xFFFFU);
  }
  constexpr double kMean = 4 * 65535.0 / 2;
  constexpr double kDeviation = 37837.0;  // of the sum: 65536 times the root of 4 / 12
  return (sum - kMean) / kDeviation * kNoise;
}

}  // namespace velt

// A signal that looks like a piece of band: a noise floor, four steady carriers, a station that
// sends Morse code and one that drifts. Every sample depends on its number and the seed alone.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace velt {

class GeneratedSignal {
 public:
  // What is in the signal: where it lies and how strong it is, amplitudes in units of a sample.
  struct Carrier {
    double frequencyHz;
    double amplitude;
  };
  static constexpr std::array<Carrier, 4> kSteady = {
      {{1240, 420}, {6350, 1350}, {9800, 240}, {18200, 560}}};
  static constexpr Carrier kKeyed{3970, 1000};
  static constexpr Carrier kDrifting{14200, 760};
  static constexpr double kDriftHz = 300;      // to either side
  static constexpr double kDriftSeconds = 24;  // there and back
  static constexpr double kNoise = 110;        // root mean square

  explicit GeneratedSignal(uint64_t seed);

  // Starts again at the first sample. Never fails: the text is always empty.
  std::string Open();

  // The next samples, at 44100 a second. Always true.
  bool Read(std::span<int16_t> samples);
  bool Skip(uint64_t samples);

 private:
  double Sample(uint64_t number) const;
  double Wave(double frequencyHz, uint64_t number) const;
  double Keying(uint64_t number) const;
  double Drifting(uint64_t number) const;
  double Noise(uint64_t number) const;

  uint64_t seed_;
  uint64_t position_ = 0;
  std::vector<bool> keyed_;  // the Morse text, one entry for the length of a dot
  std::vector<float> sine_;  // one turn
};

}  // namespace velt

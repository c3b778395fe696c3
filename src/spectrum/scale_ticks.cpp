#include "spectrum/scale_ticks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "text/formats.h"

namespace velt {
namespace {

// What a step may exceed its fair share by, and a tick its scale's end: doubles lose that much.
constexpr double kSlack = 1e-9;

struct Step {
  double size;
  int decimals;
};

Step PlainStep(double least) {
  int exponent = static_cast<int>(std::floor(std::log10(least)));
  for (;; ++exponent) {
    for (const int digit : {1, 2, 5}) {
      const double size =
          exponent < 0 ? digit / std::pow(10.0, -exponent) : digit * std::pow(10.0, exponent);
      if (size >= least * (1 - kSlack)) return {size, std::max(-exponent, 0)};
    }
  }
}

Step TimeStep(double least) {
  constexpr std::array kRound{1,   2,   5,    10,   15,   30,    60,    120,  300,
                              600, 900, 1800, 3600, 7200, 10800, 21600, 43200};
  if (least <= 0.5) return PlainStep(least);
  for (const int size : kRound) {
    if (size >= least * (1 - kSlack)) return {static_cast<double>(size), 0};
  }
  constexpr double kDay = 86400;
  return {kDay * PlainStep(std::max(least / kDay, 1.0)).size, 0};
}

template <class MakeStep, class MakeText>
std::vector<Tick> Ticks(double low, double high, int most, MakeStep stepOf, MakeText textOf) {
  std::vector<Tick> ticks;
  if (!(low < high) || !std::isfinite(high - low)) return ticks;
  const double intervals = std::max(most - 1, 1);
  // Between the ends of a scale that begins beside a tick there is place for one tick fewer.
  Step step = stepOf((high - low) / (intervals + 1));
  const auto count = [&] {
    return std::floor(high / step.size + kSlack) - std::ceil(low / step.size - kSlack) + 1;
  };
  while (count() > most) step = stepOf(step.size * 1.01);
  for (double n = std::ceil(low / step.size - kSlack); n * step.size <= high + kSlack * step.size;
       ++n) {
    const double value = n * step.size + 0.0;  // not -0
    ticks.push_back({value, textOf(value, step.decimals)});
  }
  return ticks;
}

}  // namespace

std::vector<Tick> TimeTicks(double low, double high, int most) {
  return Ticks(low, high, most, TimeStep, TimeText);
}

std::vector<Tick> PlainTicks(double low, double high, int most) {
  return Ticks(low, high, most, PlainStep, FixedText);
}

std::string TimeText(double seconds, int decimals) {
  const double unit = std::pow(10.0, decimals);
  const double rounded = std::floor(seconds * unit + 0.5) / unit;
  const double whole = std::floor(rounded / 60) * 60;
  const auto minutes = static_cast<int64_t>(whole / 60);
  std::string rest = FixedText(rounded - whole, decimals);
  if (rest.size() < 2 || rest[1] == '.') rest.insert(0, 1, '0');
  if (minutes < 60) return std::to_string(minutes) + ":" + rest;
  return std::to_string(minutes / 60) + ":" + AtLeastTwoDigits(static_cast<int32_t>(minutes % 60)) +
         ":" + rest;
}

}  // namespace velt

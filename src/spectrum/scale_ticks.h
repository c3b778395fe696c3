// Where the scales of a plot have their ticks, and what stands beside them.
#pragma once

#include <string>
#include <vector>

namespace velt {

struct Tick {
  double value = 0.0;
  std::string text;
  bool operator==(const Tick&) const = default;
};

// Each gives the multiples of the smallest round step with which not more than `most` (at least 2)
// ticks stand from `low` to `high`, both included; none unless low < high.

// In seconds; steps as people count time. The text is minutes and seconds ("1:30"), from an hour on
// with hours ("1:00:00"), with as many decimals as the step has ("0:00.25").
std::vector<Tick> TimeTicks(double low, double high, int most);

// Steps are 1, 2 or 5 times a power of ten. The text is plain, with as many decimals as the step
// has.
std::vector<Tick> PlainTicks(double low, double high, int most);

// A time in seconds, 0 or more, as the ticks show it.
std::string TimeText(double seconds, int decimals);

}  // namespace velt

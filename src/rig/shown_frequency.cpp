#include "rig/shown_frequency.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "text/formats.h"
#include "text/numbers.h"

namespace velt {

std::optional<int32_t> ShownFrequencyHz(const Label& label) {
  const std::optional<int32_t> tens = ParseWhole(Without(label.caption.Get(), '.'));
  constexpr int32_t kMost = std::numeric_limits<int32_t>::max() / 10;
  if (!tens || *tens > kMost || *tens < -kMost) return std::nullopt;
  return *tens * 10;
}

std::optional<int32_t> ShownMegahertzInHz(const Label& label) {
  // The product of a decimal fraction and a million is not always exactly whole.
  return RoundHalfEven(LeadingNumber(label.caption.Get()) * 1e6);
}

double TypedKilohertz(const std::string& text) {
  const std::string_view typed = Trimmed(text);
  if (std::count(typed.begin(), typed.end(), '.') == 2) {
    const std::optional<int32_t> tens = ParseWhole(Without(typed, '.'));
    return tens ? *tens / 100.0 : 0.0;
  }
  const double number = LeadingNumberAnyLocale(typed);
  const bool fraction = number != std::floor(number);
  return number < 100 && fraction ? number * 1000 : number;
}

bool IsRigOffLine(const Label& label) {
  return Lowered(label.caption.Get()) == Lowered(kRigOffLine);
}

}  // namespace velt

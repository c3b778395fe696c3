#include "rig/shown_frequency.h"

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

bool IsRigOffLine(const Label& label) {
  return Lowered(label.caption.Get()) == Lowered(kRigOffLine);
}

}  // namespace velt

#include "rig/shown_frequency.h"

#include <cmath>
#include <limits>

#include "text/formats.h"
#include "text/numbers.h"

namespace velt {
namespace {

bool IsDigitAt(std::string_view text, size_t at) {
  return at < text.size() && text[at] >= '0' && text[at] <= '9';
}

// "14 074.5" is "14074.5".
std::string WithoutThousandsBlanks(std::string_view text) {
  std::string joined;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool joins = text[i] == ' ' && i > 0 && IsDigitAt(text, i - 1) &&
                       IsDigitAt(text, i + 1) && IsDigitAt(text, i + 2) && IsDigitAt(text, i + 3) &&
                       !IsDigitAt(text, i + 4);
    if (!joins) joined += text[i];
  }
  return joined;
}

}  // namespace

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
  const std::string typed = WithoutThousandsBlanks(Trimmed(text));
  std::string digits = typed.substr(0, typed.find(' '));
  const size_t thousands = digits.find_first_of(".,");
  const size_t point = digits.find_last_of(".,");
  if (thousands != point) {
    // The window shows no zeros in front: ".75.50".
    if (point - thousands != 4 && thousands != 0) return 0.0;
    digits[point] = '.';
    return ParseNumber(digits.erase(thousands, 1)).value_or(0.0);
  }
  const double number = LeadingNumberAnyLocale(typed);
  const bool fraction = number != std::floor(number);
  return number < 100 && fraction ? number * 1000 : number;
}

bool IsRigOffLine(const Label& label) {
  return Lowered(label.caption.Get()) == Lowered(kRigOffLine);
}

}  // namespace velt

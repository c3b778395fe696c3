#include "text/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace velt {
namespace {

// Halves to even without depending on the floating-point environment's rounding mode.
double NearestEven(double value) {
  const double below = std::floor(value);
  const double rest = value - below;
  if (rest < 0.5) return below;
  if (rest > 0.5) return below + 1.0;
  return std::fmod(below, 2.0) == 0.0 ? below : below + 1.0;
}

template <class T>
std::optional<T> Rounded(double value) {
  if (!std::isfinite(value)) return std::nullopt;
  const double nearest = NearestEven(value);
  if (nearest < static_cast<double>(std::numeric_limits<T>::min()) ||
      nearest > static_cast<double>(std::numeric_limits<T>::max())) {
    return std::nullopt;
  }
  return static_cast<T>(nearest);
}

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

double NumberAtStart(std::string_view text, bool commaIsPoint) {
  size_t at = 0;
  while (at < text.size() && IsBlank(text[at])) ++at;
  std::string digits;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
    if (text[at] == '-') digits += '-';
    ++at;
  }
  bool pointSeen = false;
  bool digitSeen = false;
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (c >= '0' && c <= '9') {
      digits += c;
      digitSeen = true;
    } else if (!pointSeen && (c == '.' || (commaIsPoint && c == ','))) {
      digits += '.';
      pointSeen = true;
    } else {
      break;
    }
  }
  if (!digitSeen) return 0.0;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) digits += text.substr(at, 8);
  double value = 0.0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return error == std::errc() ? value : 0.0;
}

}  // namespace

std::optional<int32_t> RoundHalfEven(double value) {
  return Rounded<int32_t>(value);
}

std::optional<int16_t> RoundHalfEven16(double value) {
  return Rounded<int16_t>(value);
}

int16_t Wrap16(int64_t value) {
  return static_cast<int16_t>(static_cast<uint16_t>(static_cast<uint64_t>(value) & 0xFFFFU));
}

int16_t WrapMultiply16(int32_t a, int32_t b) {
  return Wrap16(static_cast<int64_t>(a) * static_cast<int64_t>(b));
}

int32_t Clamp32(int64_t value) {
  return static_cast<int32_t>(std::clamp<int64_t>(value, std::numeric_limits<int32_t>::min(),
                                                  std::numeric_limits<int32_t>::max()));
}

std::optional<int32_t> DivideTruncating(int32_t dividend, int32_t divisor) {
  if (divisor == 0) return std::nullopt;
  if (dividend == std::numeric_limits<int32_t>::min() && divisor == -1) return std::nullopt;
  return dividend / divisor;
}

double LeadingNumber(std::string_view text) {
  return NumberAtStart(text, false);
}

double LeadingNumberAnyLocale(std::string_view text) {
  return NumberAtStart(text, true);
}

std::optional<int32_t> ParseWhole(std::string_view text) {
  text = Trimmed(text);
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  int32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<double> ParseNumber(std::string_view text) {
  text = Trimmed(text);
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace velt

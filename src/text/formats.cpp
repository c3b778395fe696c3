#include "text/formats.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>

#include "text/utf8.h"

namespace velt {

std::string FrequencyText(int32_t frequencyHz) {
  std::string digits = std::to_string(std::abs(static_cast<int64_t>(frequencyHz) / 10));
  if (digits == "0") digits.clear();
  // Three groups of which the separators always stand, whatever groups are empty.
  const auto splitOff = [&digits](size_t count) {
    std::string group(LastCharacters(digits, count));
    digits.resize(digits.size() - group.size());
    return group;
  };
  const std::string tens = splitOff(2);
  const std::string kilohertz = splitOff(3);
  const std::string sign = frequencyHz < 0 ? "-" : "";
  return sign + digits + "." + kilohertz + "." + tens;
}

std::string CountText(int64_t frequencyHz, int format) {
  if (format == 0) return std::to_string(frequencyHz);
  if (format == 2) {
    std::string megahertz = FixedText(static_cast<double>(frequencyHz) / 1e6, 5);
    return megahertz.insert(megahertz.size() - 2, ".");
  }
  std::string tens = std::to_string(std::abs(frequencyHz) / 10);
  constexpr size_t kPlaces = 8;
  if (tens.size() < kPlaces) tens.insert(0, kPlaces - tens.size(), '0');
  tens.insert(tens.size() - 2, ".");
  tens.insert(tens.size() - 6, ".");
  return frequencyHz < 0 ? "-" + tens : tens;
}

std::string AtLeastTwoDigits(int32_t value) {
  std::string digits = std::to_string(std::abs(static_cast<int64_t>(value)));
  if (digits.size() < 2) digits.insert(0, "0");
  return digits;
}

std::string_view LastCharacters(std::string_view text, size_t count) {
  return text.size() <= count ? text : text.substr(text.size() - count);
}

std::string_view FirstCharacters(std::string_view text, size_t count) {
  size_t end = 0;
  for (; count > 0 && end < text.size(); --count) end += CharacterLength(text.substr(end));
  return text.substr(0, end);
}

std::string SingleText(float value) {
  std::array<char, 64> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return error == std::errc() ? std::string(buffer.data(), end) : std::string("0");
}

std::string BooleanText(bool value) {
  return value ? "True" : "False";
}

std::string FixedText(double value, int decimals) {
  std::array<char, 400> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                          std::chars_format::fixed, decimals);
  return error == std::errc() ? std::string(buffer.data(), end) : std::string("0");
}

std::string ColourText(uint32_t rgb) {
  std::string text = "#";
  for (int shift = 20; shift >= 0; shift -= 4) text += "0123456789ABCDEF"[rgb >> shift & 0xFU];
  return text;
}

std::string Lowered(std::string_view text) {
  std::string lowered(text);
  for (char& c : lowered) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lowered;
}

std::string Raised(std::string_view text) {
  std::string raised(text);
  for (char& c : raised) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return raised;
}

std::string Without(std::string_view text, char removed) {
  std::string kept;
  kept.reserve(text.size());
  for (const char c : text) {
    if (c != removed) kept += c;
  }
  return kept;
}

}  // namespace velt

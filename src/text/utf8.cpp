#include "text/utf8.h"

#include <algorithm>

namespace velt {

size_t CharacterLength(std::string_view text) {
  const auto isContinuation = [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
  };
  const auto lead = static_cast<unsigned char>(text.front());
  const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 1;
  const std::string_view rest = text.substr(1, length - 1);
  const bool whole = rest.size() == length - 1 && std::ranges::all_of(rest, isContinuation);
  return whole ? length : 1;
}

std::string FromLatin1(std::string_view text) {
  std::string utf8;
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | (code >> 6));
      utf8 += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return utf8;
}

std::string AsUtf8(std::string_view text) {
  for (std::string_view rest = text; !rest.empty(); rest.remove_prefix(CharacterLength(rest))) {
    const bool ascii = static_cast<unsigned char>(rest.front()) < 0x80;
    if (!ascii && CharacterLength(rest) == 1) return FromLatin1(text);
  }
  return std::string(text);
}

}  // namespace velt

// Key chords as texts: "^" holds Ctrl, "%" Alt, "+" Shift for the next key or for the group of keys
// in parentheses behind it. Letters and digits stand for themselves.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace velt {

struct KeyChord {
  bool control = false;
  bool alt = false;
  bool shift = false;
  char key = 0;  // a small letter or a digit
  bool operator==(const KeyChord&) const = default;
};

// Empty for a text that nobody understands, or without any key.
std::optional<std::vector<KeyChord>> ReadKeys(std::string_view text);

}  // namespace velt

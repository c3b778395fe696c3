#include "adapters/x11/key_notation.h"

namespace velt {
namespace {

class KeyReader {
 public:
  explicit KeyReader(std::string_view text) : rest_(text) {}

  std::optional<std::vector<KeyChord>> Read() {
    const bool understood = ReadGroup({}) && rest_.empty();
    if (!understood || chords_.empty()) return std::nullopt;
    return chords_;
  }

 private:
  // Up to the end or to a closing parenthesis, which stays.
  bool ReadGroup(const KeyChord& held) {
    while (!rest_.empty() && rest_.front() != ')') {
      if (!ReadItem(held)) return false;
    }
    return true;
  }

  bool ReadItem(KeyChord held) {
    for (; !rest_.empty(); rest_.remove_prefix(1)) {
      const char c = rest_.front();
      held.control |= c == '^';
      held.alt |= c == '%';
      held.shift |= c == '+';
      if (c != '^' && c != '%' && c != '+') break;
    }
    if (rest_.empty()) return false;
    const char c = rest_.front();
    rest_.remove_prefix(1);
    if (c == '(') {
      if (!ReadGroup(held) || rest_.empty()) return false;
      rest_.remove_prefix(1);
      return true;
    }
    const bool known = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
    if (!known) return false;
    held.key = c;
    chords_.push_back(held);
    return true;
  }

  std::string_view rest_;
  std::vector<KeyChord> chords_;
};

}  // namespace

std::optional<std::vector<KeyChord>> ReadKeys(std::string_view text) {
  return KeyReader(text).Read();
}

}  // namespace velt

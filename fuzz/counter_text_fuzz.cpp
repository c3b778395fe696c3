// What an Arduino sends: however it arrives in pieces, no piece of a number passes for a count.
#include <algorithm>
#include <cstdint>
#include <set>
#include <string>

#include "require.h"
#include "rig/count_reader.h"
#include "text/formats.h"
#include "text/numbers.h"

namespace {

constexpr char kPause = '\x01';  // in the input

// What stands alone between two ends of lines. A pause is one too, up to the first real one.
std::set<std::string> Alone(std::string text) {
  const std::string ends{'\n', '\r', kPause};
  const size_t first = std::min(text.find_first_of("\n\r"), text.size());
  text.erase(std::remove(text.begin() + static_cast<ptrdiff_t>(first), text.end(), kPause),
             text.end());
  std::set<std::string> alone;
  size_t from = text.find_first_of(ends);
  while (from != std::string::npos) {
    const size_t to = text.find_first_of(ends, from + 1);
    if (to == std::string::npos) break;
    alone.emplace(velt::Trimmed(std::string_view(text).substr(from + 1, to - from - 1)));
    from = to;
  }
  return alone;
}

// All counts, taken at each pause and at the end; bytewise or in pieces between the pauses.
std::string Counts(std::string_view input, bool bytewise) {
  velt::CountReader reader;
  std::string counts;
  while (!input.empty()) {
    const size_t next = std::min(input.find(kPause), input.size());
    const std::string_view piece = input.substr(0, next);
    for (size_t i = 0; bytewise && i < next; ++i) reader.Feed(piece.substr(i, 1));
    if (!bytewise) reader.Feed(piece);
    const bool pauses = next < input.size();
    if (pauses) reader.Pause();
    counts += reader.Take() + ";";
    input.remove_prefix(next + (pauses ? 1 : 0));
  }
  return counts;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  std::string counts = Counts(input, true);
  Require(counts == Counts(input, false), "pieces make no difference");

  const std::set<std::string> alone = Alone(input);
  for (size_t end = 0; (end = counts.find(';')) != std::string::npos; counts.erase(0, end + 1)) {
    const std::string count = counts.substr(0, end);
    if (count.empty()) continue;
    Require(alone.contains(count), "a count stands alone");
    const auto value = velt::ParseWhole(count);
    Require(value && *value >= 0, "a count is a number of 32 bits");
    std::string shown = velt::CountText(*value, 1);
    std::erase(shown, '.');
    Require(shown.size() >= 8 && velt::ParseWhole(shown) == *value / 10,
            "what is shown is the count without its last digit");
  }
  return 0;
}

// Finds the counts in what an Arduino sends, which comes in any pieces. A count stands on a line of
// its own; from one that ends no lines, a count is whole once nothing came after it for a while. So
// a piece of a number never passes for one: not while the rest is on its way, and not the rest of
// one that was being sent when the port was opened. Anything else is noise.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velt {

class CountReader {
 public:
  // What comes from now on has nothing to do with what came before.
  void Reset();

  void Feed(std::string_view text);

  // Nothing has come for a while, longer than the gaps inside a number.
  void Pause();

  // The newest whole count since the last call, as its digits; empty when there is none. It fits
  // into 32 bits.
  std::string Take();

 private:
  static constexpr size_t kMostLength = 32;  // of a line with a count

  void EndPiece();

  std::string piece_;
  bool whole_ = false;    // the piece has its beginning
  bool tooLong_ = false;  // and is none
  bool endsLines_ = false;
  std::string newest_;
};

}  // namespace velt

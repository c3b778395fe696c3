#include "rig/count_reader.h"

#include <algorithm>
#include <utility>

#include "text/numbers.h"

namespace velt {

void CountReader::Reset() {
  *this = CountReader();
}

void CountReader::Feed(std::string_view text) {
  for (const char c : text) {
    if (c == '\n' || c == '\r') {
      endsLines_ = true;
      EndPiece();
    } else if (piece_.size() < kMostLength) {
      piece_ += c;
    } else {
      tooLong_ = true;
    }
  }
}

void CountReader::Pause() {
  if (!endsLines_) EndPiece();
}

std::string CountReader::Take() {
  return std::exchange(newest_, {});
}

void CountReader::EndPiece() {
  const std::string_view digits = Trimmed(piece_);
  const bool isNumber = std::ranges::all_of(digits, [](char c) { return c >= '0' && c <= '9'; }) &&
                        ParseWhole(digits).has_value();
  if (whole_ && !tooLong_ && isNumber) newest_ = digits;
  piece_.clear();
  whole_ = true;
  tooLong_ = false;
}

}  // namespace velt

#include "adapters/rigctld/reply_reader.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "text/numbers.h"

namespace velt {

namespace {

std::optional<int32_t> EndCode(std::string_view line) {
  constexpr std::string_view kEnd = "RPRT ";
  if (!line.starts_with(kEnd)) return std::nullopt;
  return ParseWhole(line.substr(kEnd.size()));
}

}  // namespace

std::string_view RigReply::Field(std::string_view key) const {
  for (size_t i = 1; i < lines.size(); ++i) {
    const std::string_view line = lines[i];
    if (line.size() > key.size() && line.starts_with(key) && line[key.size()] == ':') {
      return Trimmed(line.substr(key.size() + 1));
    }
  }
  return {};
}

bool RigReply::RigIsSilent() const {
  return code == -5 || code == -6;  // time limit, input and output
}

bool RigReply::Refused() const {
  // Internal, protocol, truncated, bus error, bus collision.
  constexpr int32_t kOnTheWay[] = {-7, -8, -10, -13, -14};
  return code != 0 && !RigIsSilent() &&
         std::find(std::begin(kOnTheWay), std::end(kOnTheWay), code) == std::end(kOnTheWay);
}

std::vector<RigReply> ReplyReader::Feed(std::string_view bytes) {
  std::vector<RigReply> replies;
  while (!bytes.empty() && !overflowed_) {
    const size_t end = bytes.find('\n');
    const std::string_view piece = bytes.substr(0, end);
    size_ += piece.size();
    if (size_ > kMostBytes || lines_.size() > kMostBytes / 16) {
      Reset();
      overflowed_ = true;
      break;
    }
    line_ += piece;
    if (end == std::string_view::npos) break;
    bytes.remove_prefix(end + 1);
    if (!line_.empty() && line_.back() == '\r') line_.pop_back();
    if (const auto code = EndCode(line_)) {
      replies.push_back({std::move(lines_), *code});
      Reset();
    } else {
      lines_.push_back(std::move(line_));
      line_.clear();
    }
  }
  return replies;
}

void ReplyReader::Reset() {
  line_.clear();
  lines_.clear();
  size_ = 0;
  overflowed_ = false;
}

}  // namespace velt

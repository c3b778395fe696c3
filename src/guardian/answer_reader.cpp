#include "guardian/answer_reader.h"

#include <utility>

namespace velt {

void AnswerReader::Begin() {
  line_.clear();
  told_ = FollowUp::Told::Nothing;
}

std::optional<FollowUp::Answer> AnswerReader::Read(std::string_view bytes) {
  std::optional<FollowUp::Answer> last;
  for (const char c : bytes) {
    if (c == '\n') {
      if (const auto answer = EndLine()) last = answer;
    } else if (line_.size() < kMostOfALine) {
      line_ += c;
    }
  }
  return last;
}

std::optional<FollowUp::Answer> AnswerReader::EndLine() {
  std::string line = std::exchange(line_, {});
  if (line.ends_with('\r')) line.pop_back();
  using Told = FollowUp::Told;
  if (!recipe_.tells.empty() && line.starts_with(recipe_.tells)) {
    told_ = line == recipe_.receives ? Told::Receives : Told::Transmits;
  }
  if (recipe_.answerEnd.empty() || !line.starts_with(recipe_.answerEnd)) return std::nullopt;
  return FollowUp::Answer{line == recipe_.accepted, std::exchange(told_, Told::Nothing)};
}

}  // namespace velt

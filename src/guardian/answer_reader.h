// Reads the answers of a server by a recipe, however its bytes are split.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "guardian/follow_up.h"
#include "ports/guardian.h"

namespace velt {

class AnswerReader {
 public:
  static constexpr size_t kMostOfALine = 512;  // the rest of a longer one is not looked at

  explicit AnswerReader(const ReleaseRecipe& recipe) : recipe_(recipe) {}

  // A new command goes out: what was read so far is no answer to it.
  void Begin();

  // The answer that became whole with these bytes; of several the last one.
  std::optional<FollowUp::Answer> Read(std::string_view bytes);

 private:
  std::optional<FollowUp::Answer> EndLine();

  const ReleaseRecipe& recipe_;
  std::string line_;
  FollowUp::Told told_ = FollowUp::Told::Nothing;
};

}  // namespace velt

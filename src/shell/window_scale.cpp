#include "shell/window_scale.h"

#include <algorithm>
#include <array>

#include "text/numbers.h"

namespace velt {
namespace {

constexpr int32_t kDesignSize = 100;
constexpr std::array<int32_t, 5> kScales{kDesignSize, 125, 150, 175, 200};

}  // namespace

WindowScale::WindowScale(ShellControls& form, Prompts& prompts) : form_(form), prompts_(prompts) {
  for (auto& [percent, item] : form_.mnuscales) {
    connections_ += item->clicked.Listen([this, p = percent] { mnuscales_Click(p); });
  }
  Choose(chosen_);
}

int32_t WindowScale::Parse(const std::string& stored) {
  const auto percent = ParseWhole(stored);
  return percent && std::ranges::count(kScales, *percent) != 0 ? *percent : kDesignSize;
}

void WindowScale::Load(const std::string& stored) {
  shown_ = Parse(stored);
  Choose(shown_);
}

void WindowScale::mnuscales_Click(int32_t percent) {
  if (percent == chosen_) return;
  Choose(percent);
  if (percent == shown_) return;
  prompts_.Tell({"VELT-SA",
                 "VELT-SA will be shown at " + form_.mnuscales[percent].caption.Get() +
                     " from its next start on.",
                 BoxIcon::Information},
                {});
}

void WindowScale::Choose(int32_t percent) {
  chosen_ = percent;
  for (auto& [each, item] : form_.mnuscales) item->checked = each == percent;
}

}  // namespace velt

#include "app/logged_prompts.h"

namespace velt {

void LoggedPrompts::Tell(const MessagePrompt& box, std::function<void()> closed) {
  log_.Write(LogLevel::Warning, "velt.prompts", box.title + ": " + box.text);
  if (closed) dropped_ = scheduler_.After(Milliseconds(0), std::move(closed));
}

void LoggedPrompts::Ask(const MessagePrompt& box, std::function<void(bool)> answered) {
  log_.Write(LogLevel::Warning, "velt.prompts", box.title + ": " + box.text);
  if (!answered) return;
  dropped_ =
      scheduler_.After(Milliseconds(0), [answered = std::move(answered)] { answered(false); });
}

void LoggedPrompts::Input(const InputPrompt&,
                          std::function<void(std::optional<std::string>)> answered) {
  if (!answered) return;
  dropped_ = scheduler_.After(Milliseconds(0),
                              [answered = std::move(answered)] { answered(std::nullopt); });
}

bool LoggedPrompts::Popup(const std::vector<PopupItem>&,
                          std::function<void(std::function<void()>)>) {
  return false;
}

}  // namespace velt

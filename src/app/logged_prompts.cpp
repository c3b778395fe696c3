#include "app/logged_prompts.h"

#include "text/formats.h"

namespace velt {

namespace {

// A box has lines, the log has one for each message.
std::string InOneLine(const MessagePrompt& box) {
  std::string line = box.title + ": ";
  for (const char c : Without(box.text, '\r')) line += c == '\n' ? ' ' : c;
  return line;
}

}  // namespace

void LoggedPrompts::Tell(const MessagePrompt& box, std::function<void()> closed) {
  log_.Write(LogLevel::Warning, "velt.prompts", InOneLine(box));
  if (closed) Later(std::move(closed));
}

void LoggedPrompts::Ask(const MessagePrompt& box, std::function<void(bool)> answered) {
  log_.Write(LogLevel::Warning, "velt.prompts", InOneLine(box));
  if (!answered) return;
  Later([answered = std::move(answered)] { answered(false); });
}

void LoggedPrompts::Input(const InputPrompt&,
                          std::function<void(std::optional<std::string>)> answered) {
  if (!answered) return;
  Later([answered = std::move(answered)] { answered(std::nullopt); });
}

bool LoggedPrompts::Popup(const PopupPlace&, const std::vector<PopupItem>&,
                          std::function<void(std::function<void()>)>) {
  return false;
}

void LoggedPrompts::Later(std::function<void()> f) {
  scheduler_.Post([weak = std::weak_ptr(open_), f = std::move(f)] {
    if (weak.lock()) f();
  });
}

}  // namespace velt

// Prompts for a run without a display: what would be shown goes to the log, questions are answered
// with no.
#pragma once

#include <memory>

#include "ports/log.h"
#include "ports/prompts.h"
#include "ports/scheduler.h"

namespace velt {

class LoggedPrompts : public Prompts {
 public:
  LoggedPrompts(Scheduler& scheduler, Log& log) : scheduler_(scheduler), log_(log) {}

  void Tell(const MessagePrompt& box, std::function<void()> closed) override;
  void Ask(const MessagePrompt& box, std::function<void(bool)> answered) override;
  void Input(const InputPrompt& box,
             std::function<void(std::optional<std::string>)> answered) override;
  bool Popup(const PopupPlace& opener, const std::vector<PopupItem>& items,
             std::function<void(std::function<void()>)> closed) override;
  void DropAll() override { open_ = std::make_shared<char>(); }

 private:
  void Later(std::function<void()> f);

  Scheduler& scheduler_;
  Log& log_;
  std::shared_ptr<char> open_ = std::make_shared<char>();  // what waits is dropped with it
};

}  // namespace velt

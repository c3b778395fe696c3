// The message line: a short notice that blinks four times over two seconds and is gone.
#pragma once

#include <string>

#include "form/main_form.h"

namespace velt {

class MessageLine {
 public:
  explicit MessageLine(MessageControls& form);

  // Shows the text. While another one is blinking the new text takes its remaining ticks.
  void Show(const std::string& text);

  void Timer2_Timer();

  // The name that the line is left holding as the recording text.
  std::string recFileName;

 private:
  MessageControls& form_;
  int messageTicks_ = 0;
  Connections connections_;
};

}  // namespace velt

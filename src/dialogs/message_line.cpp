#include "dialogs/message_line.h"

namespace velt {

MessageLine::MessageLine(MessageControls& form) : form_(form) {
  connections_ += form_.Timer2.ticked.Listen([this] { Timer2_Timer(); });
}

void MessageLine::Show(const std::string& text) {
  form_.lblMessage.caption = text;
  form_.Timer2.enabled = true;
}

void MessageLine::Timer2_Timer() {
  ++messageTicks_;
  form_.lblMessage.visible = messageTicks_ % 2 == 1;
  if (messageTicks_ <= 7) return;
  messageTicks_ = 0;
  form_.lblMessage.visible = false;
  form_.lblMessage.caption = "recording ''" + recFileName + "...";
  form_.Timer2.enabled = false;
}

}  // namespace velt

#include "dialogs/message_window.h"

namespace velt {

MessageWindow::MessageWindow(MessageForm& form) : form_(form) {
  connections_ += form_.Timer1.ticked.Listen([this] { Timer1_Timer(); });
  connections_ += form_.Window.closeAsked.Listen([this] { Unload(); });
}

void MessageWindow::Show() {
  form_.Window.visible = true;
  form_.Timer1.enabled = true;
}

void MessageWindow::Unload() {
  form_.Window.visible = false;
  form_.Timer1.enabled = false;
}

void MessageWindow::Timer1_Timer() {
  aniLeft_ = (aniLeft_ + 10) % 270;
  if (++aniTicks_ > 110) {
    aniTicks_ = 0;
    Unload();
  }
  form_.lblani.leftTwips = aniLeft_;
}

}  // namespace velt

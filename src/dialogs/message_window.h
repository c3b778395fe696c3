// The window that asks to wait while the engine starts. It closes itself after 11 seconds.
#pragma once

#include <cstdint>

#include "form/message_form.h"

namespace velt {

class MessageWindow {
 public:
  explicit MessageWindow(MessageForm& form);

  void Show();
  void Unload();
  bool Shown() const { return form_.Window.visible; }

  void Timer1_Timer();

 private:
  MessageForm& form_;
  // Both go on where the last showing left them.
  int32_t aniLeft_ = 0;  // twips
  int32_t aniTicks_ = 0;
  Connections connections_;
};

}  // namespace velt

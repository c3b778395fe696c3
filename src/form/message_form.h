// `frmMessage`: the state of the small window that asks to wait while the engine starts.
#pragma once

#include <cstdint>

#include "form/controls.h"
#include "form/dialog_window.h"

namespace velt {

// A label that slides along.
struct MovingLabel : Label {
  MovingLabel(Form& form, std::string text) : Label(form, std::move(text)), leftTwips(*this, 0) {}
  Property<int32_t> leftTwips;
};

struct MessageForm : Form {
  MessageForm();

  DialogWindow Window;
  Label Label1;        // what is waited for
  MovingLabel lblani;  // shows that the program is alive
  Timer Timer1;        // moves it
};

}  // namespace velt

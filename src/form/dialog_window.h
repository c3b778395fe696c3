// The window of a form of its own, which comes and goes apart from the main window.
#pragma once

#include <string>
#include <utility>

#include "form/control.h"

namespace velt {

// `visible` opens and closes it.
struct DialogWindow : Control {
  DialogWindow(Form& form, std::string text) : Control(form), caption(*this, std::move(text)) {
    visible = false;
  }
  Property<std::string> caption;
  Event<> closeAsked;  // by the user, at the frame
  Event<> forwardWanted;

  // Brings the open window before the others and gives it the keyboard.
  void BringForward() const { forwardWanted.Raise(); }
};

}  // namespace velt

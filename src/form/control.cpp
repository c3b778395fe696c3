#include "form/control.h"

namespace velt {

std::vector<Control*> Form::TakeChanged() {
  std::vector<Control*> taken;
  taken.swap(changed_);
  for (Control* control : taken) control->listed_ = false;
  return taken;
}

void Control::Touch() {
  if (listed_) return;
  listed_ = true;
  const bool first = form_.changed_.empty();
  form_.changed_.push_back(this);
  if (first) form_.wake.Raise();
}

}  // namespace velt

#include "form/control.h"

namespace velt {

void Form::TakeChanged(std::vector<Control*>& taken) {
  taken.clear();
  taken.swap(changed_);
  for (Control* control : taken) control->listed_ = false;
}

void Control::Touch() {
  if (listed_) return;
  listed_ = true;
  form_.changed_.push_back(this);
}

}  // namespace velt

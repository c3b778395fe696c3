#include "form/message_form.h"

namespace velt {

MessageForm::MessageForm()
    : Window(*this, "VELT-SA"),
      Label1(*this, " Please wait...Loading VELT Engine...."),
      lblani(*this, "\xE2\x97\x8F"),  // a filled circle
      Timer1(*this, 100) {
  Timer1.enabled = false;
}

}  // namespace velt

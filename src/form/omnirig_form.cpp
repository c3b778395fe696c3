#include "form/omnirig_form.h"

namespace velt {

OmniRigForm::OmniRigForm()
    : Window(*this, "OmniRig Configuration & Status"),
      cmdStartStop(*this, "Start"),
      Option1(*this, "Rig 1"),
      Option2(*this, "Rig 2"),
      optVFO(*this, {{0, "Current VFO"}, {1, "VFO A"}, {2, "VFO B"}, {3, "VFO B and A"}}),
      Combo1(*this),
      Command1(*this, "Close"),
      frmReport(*this, "Transceiver"),
      Label8(*this),
      Label3(*this),
      Label4(*this),
      Label10(*this),
      Label6(*this),
      lblLink(*this),
      lampLink(*this),
      lblCause(*this),
      lblCommand(*this),
      cmdCopyCommand(*this, "Copy"),
      txtAddress1(*this),
      txtAddress2(*this),
      cmdApplyAddresses(*this, "Apply"),
      lblAddressMessage(*this),
      txtLimit(*this),
      lblLimitMessage(*this) {
  Combo1.items = {"LSB", "USB", "CW", "AM", "FM"};
  cmdApplyAddresses.enabled = false;
}

}  // namespace velt

// `frmOmniRig`: the state of every control of the CAT dialog. A form of its own, because its window
// comes and goes apart from the main window.
#pragma once

#include "form/controls.h"
#include "form/dialog_window.h"

namespace velt {

struct OmniRigForm : Form {
  OmniRigForm();

  DialogWindow Window;
  Button cmdStartStop;
  OptionButton Option1;               // rig 1
  OptionButton Option2;               // rig 2
  ControlArray<OptionButton> optVFO;  // what a frequency goes to: 0 current, 1 A, 2 B, 3 B then A
  ListBox Combo1;                     // modes
  Button Command1;                    // closes
  Frame frmReport;                    // around what the rig reports
  RigLabel Label8;                    // the rig's status text
  RigLabel Label3;                    // current frequency in Hz
  RigLabel Label4;                    // VFO A in Hz
  RigLabel Label10;                   // VFO B in Hz
  RigLabel Label6;                    // mode
  Label lblLink;                      // how the link stands
  Lamp lampLink;                      // the same at a glance
  Label lblCause;                     // why it does not stand, and what helps
  Label lblCommand;                   // what starts a server at the chosen rig's address
  Button cmdCopyCommand;
  TextBox txtAddress1;       // "HOST:PORT" of rig 1's server
  TextBox txtAddress2;       // and of rig 2's
  Button cmdApplyAddresses;  // enabled while a typed address is not in use yet
  Label lblAddressMessage;   // what is wrong with a typed address
  TextBox txtLimit;          // longest transmission in minutes, 1 to 60
  Label lblLimitMessage;     // what is wrong with it
};

}  // namespace velt

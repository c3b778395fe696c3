// `frmSetup`: the state of every control of the setup dialog.
#pragma once

#include "form/controls.h"
#include "form/dialog_window.h"

namespace velt {

struct SetupForm : Form {
  SetupForm();

  DialogWindow Window;
  TextBox Text1;          // spectrum sensitivity
  TextBox Text2;          // oscilloscope sensitivity
  TextBox Text3;          // S-meter sensitivity
  TextBox Text4;          // waterfall clarity
  TextBox Text5;          // waterfall speed
  ListBox Combo1;         // resolution
  ListBox Combo2;         // sample rate of recordings
  ListBox Combo3;         // the waterfall's colours
  ListBox Combo4;         // period of the analysis
  ListBox cmbDevices;     // sound inputs
  Button Command1;        // colours
  Button Command2;        // Cancel
  Button Command3;        // OK
  Button Command4;        // reset
  Button Command5;        // volume control
  Button cmdFreqs;        // band presets
  Button cmdSetpOmniRig;  // CAT dialog
};

}  // namespace velt

// `frmSetFreqs`: the state of every control of the band preset dialog.
#pragma once

#include "form/controls.h"
#include "form/dialog_window.h"

namespace velt {

struct BandsForm : Form {
  BandsForm();

  DialogWindow Window;
  // One of each for every band, 0 to 9.
  ControlArray<TextBox> txtFreqCaption;
  ControlArray<TextBox> txtFrequencies;  // kHz
  ControlArray<Label> Label1;            // the unit, as it has always been called
  Label lblMessage;                      // what was imported or exported
  Label lblProblem;                      // or why not
  Button cmdImport;
  Button cmdExport;
  Button Command1;  // OK
  Button Command2;  // Cancel
};

}  // namespace velt

// `frmColors`: the state of every control of the colour dialog.
#pragma once

#include "form/controls.h"
#include "form/dialog_window.h"

namespace velt {

struct ColorsForm : Form {
  ColorsForm();

  DialogWindow Window;
  // One for each display colour, by its place in the colour table.
  ControlArray<ColourButton> cmdColor;
  ControlArray<Button> cmdDefault;  // enabled while the colour is another one
  PalettePicture picPalette;        // the waterfall's, from weak to strong
  Button cmdDefaults;               // all colours at once
  Button cmdOK;
  Button cmdCancel;
};

}  // namespace velt

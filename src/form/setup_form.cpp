#include "form/setup_form.h"

namespace velt {

SetupForm::SetupForm()
    : Window(*this, "Calibration and Customization"),
      Text1(*this),
      Text2(*this),
      Text3(*this),
      Text4(*this),
      Text5(*this),
      Combo1(*this),
      Combo2(*this),
      Combo3(*this),
      Combo4(*this),
      cmbDevices(*this),
      Command1(*this, "Colors..."),
      Command2(*this, "Cancel"),
      Command3(*this, "OK"),
      Command4(*this, "Reset..."),
      Command5(*this, "Volume Control"),
      cmdFreqs(*this, "Presets..."),
      cmdSetpOmniRig(*this, "OmniRig...") {
  Text1.toolTip = "values between 1...100";
  Text2.toolTip = "values between 0.1 ... 50";
  Text3.toolTip = "values between 0.1 ... 50";
  Text4.toolTip = "Values between 0...99";
  Text5.toolTip = "Values between 0...10";
  Combo1.items = {"Normal", "Median", "Averaging", "Minimum"};
  Combo2.items = {"11025", "22050", "44100"};
  Combo3.items = {"Common", "Gray", "Red", "Green", "Blue", "Color"};
  Combo3.toolTip = "waterfall stream color";
  Combo4.items = {"Normal", "Slow"};
}

}  // namespace velt

#include "form/colors_form.h"

namespace velt {

ColorsForm::ColorsForm()
    : Window(*this, "Edit User Colors"),
      cmdColor(*this, {{0, "Display background"},
                       {1, "Grid"},
                       {2, "Window"},
                       {3, "Spectrum"},
                       {4, "Oscilloscope"},
                       {5, "Passband"}}),
      cmdDefault(*this, {{0, "Default"},
                         {1, "Default"},
                         {2, "Default"},
                         {3, "Default"},
                         {4, "Default"},
                         {5, "Default"}}),
      picPalette(*this),
      cmdDefaults(*this, "All Defaults"),
      cmdOK(*this, "OK"),
      cmdCancel(*this, "Cancel") {}

}  // namespace velt

#include "form/about_form.h"

namespace velt {

AboutForm::AboutForm()
    : Window(*this, "About VELT-SA"),
      lblVersion(*this),
      lblDescription(*this,
                     "Spectrum analyser for the VELT engine, which also drives the transceiver "
                     "through OmniRig."),
      lblWarning(*this,
                 "It comes without any warranty. Whoever transmits with it has to have a licence "
                 "and to watch the transmitter."),
      Label1(*this),
      Label2(*this),
      Label5(*this),
      Image3(*this, "Donate..."),
      cmdSysInfo(*this, "&System Info..."),
      cmdOK(*this, "OK") {}

}  // namespace velt

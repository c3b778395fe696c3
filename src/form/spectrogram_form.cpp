#include "form/spectrogram_form.h"

namespace velt {

SpectrogramForm::SpectrogramForm()
    : Window(*this, "Spectrogram of a recording"),
      picSpectrogram(*this),
      lblMessage(*this),
      lblProblem(*this),
      prgWork(*this),
      cmdCancel(*this, "Cancel"),
      cmdOpen(*this, "Open..."),
      cmdSave(*this, "Save..."),
      cmdClose(*this, "Close") {
  cmdCancel.enabled = false;
  cmdSave.enabled = false;
  prgWork.visible = false;
}

}  // namespace velt

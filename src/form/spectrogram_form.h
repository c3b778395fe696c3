// The state of the window that shows the spectrogram of a recording.
#pragma once

#include <cstdint>

#include "form/omnirig_form.h"

namespace velt {

// How far a work has come.
struct ProgressControl : Control {
  explicit ProgressControl(Form& form) : Control(form), percent(*this, 0) {}
  Property<int32_t> percent;
};

// A picture that is kept elsewhere; `frame` tells that there is another one.
struct PictureControl : Control {
  explicit PictureControl(Form& form) : Control(form), frame(*this, 0) {}
  Property<uint32_t> frame;
};

struct SpectrogramForm : Form {
  SpectrogramForm();

  DialogWindow Window;
  PictureControl picSpectrogram;
  Label lblMessage;         // what is done, or was
  Label lblProblem;         // what is wrong with the recording, or with saving
  ProgressControl prgWork;  // seen while a recording is read
  Button cmdCancel;         // likewise: stops reading it
  Button cmdOpen;           // another recording
  Button cmdSave;           // enabled while there is a picture
  Button cmdClose;
};

}  // namespace velt

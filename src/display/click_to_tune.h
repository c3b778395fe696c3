// Clicks on the display and on the peak label: they tune the rig or choose the sideband.
#pragma once

#include <cstdint>

#include "dialogs/message_line.h"
#include "display/display_options.h"
#include "engine/operator_commands.h"
#include "form/main_form.h"
#include "rig/rig_control.h"
#include "rig/rig_state.h"

namespace velt {

class ClickToTune {
 public:
  struct Parts {
    DisplayControls& form;
    const CaptureControls& captureForm;
    const RigControls& rigForm;
    const RigState& rig;
    const DisplayOptions& options;
    RigControl& control;
    OperatorCommands& commands;
    MessageLine& messages;
  };
  explicit ClickToTune(const Parts& parts);

  // The left button (1) tunes to the readout of the cursor while the analyser runs in mode 0. The
  // right one (2) chooses lower sideband left of the centre line, upper sideband right of it and CW
  // on it, with the engine's keys. x in pixels of the display.
  void Scope_MouseDown(int button, int x);

  // Tunes to the number that the label shows, in tens of hertz.
  void lblFreqDetect_MouseDown();

 private:
  void TuneToCursor();
  void ChooseSideband(int x);

  Parts parts_;
  Connections connections_;
};

}  // namespace velt

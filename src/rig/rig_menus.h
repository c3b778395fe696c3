// What the main window's CAT items do when they are used: each handler is one verb of the rig.
#pragma once

#include <cstdint>

#include "form/main_form.h"
#include "ports/prompts.h"
#include "rig/current_rig.h"
#include "rig/omnirig_dialog.h"
#include "rig/rig_control.h"
#include "rig/rig_state.h"

namespace velt {

class RigMenus {
 public:
  struct Parts {
    RigControls& form;
    RigState& state;
    const CurrentRig& rig;
    RigControl& control;
    OmniRigDialog& dialog;
    MessageLine& messages;
    Prompts& prompts;
  };
  explicit RigMenus(const Parts& parts);

  // To be called before the menu of that name opens.
  void mnuRig_Click();

  void mnunorig_Click();
  void mnuArduinoFreq_Click();
  void mnuSetFreqManual_Click();

 private:
  Parts parts_;
  Connections connections_;
};

}  // namespace velt

// What the main window's rig controls do when they are used: each handler is one verb of the rig.
#pragma once

#include <cstdint>
#include <functional>

#include "form/main_form.h"
#include "ports/prompts.h"
#include "rig/current_rig.h"
#include "rig/ptt.h"
#include "rig/rig_control.h"
#include "rig/rig_state.h"

namespace velt {

class RigMenus {
 public:
  RigMenus(RigControls& form, RigState& state, const CurrentRig& rig, RigControl& control, Ptt& ptt,
           Prompts& prompts);

  std::function<void()> openDialog;  // the CAT dialog
  std::function<void()> focusScope;  // gives the keyboard back to the display

  // To be called before the menu of that name opens.
  void mnuRig_Click();
  void mnuModMode_Click();

  void mnunorig_Click();
  void mnuArduinoFreq_Click();
  void mnuSetFreqManual_Click();
  void mnuModModes_Click(int32_t index);  // 1 LSB, 2 USB, 3 CW
  void mnuPTT_ON_Click();
  void mnuPTT_OFF_Click();
  void optTXRX_MouseDown(int32_t index);  // 0 transmit, else receive

 private:
  void Connect();
  void SetFrequencyByHand(const std::string& kilohertz);

  RigControls& form_;
  RigState& state_;
  const CurrentRig& rig_;
  RigControl& control_;
  Ptt& ptt_;
  Prompts& prompts_;
  Connections connections_;
};

}  // namespace velt

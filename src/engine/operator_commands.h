// What the operator asks of the transceiver by menu and button: mode, transmit, receive.
#pragma once

#include <cstdint>

#include "form/main_form.h"
#include "rig/ptt.h"
#include "rig/rig_control.h"

namespace velt {

class OperatorCommands {
 public:
  struct Parts {
    RigControls& form;
    ScopeControl& scope;
    RigControl& control;
    Ptt& ptt;
  };
  explicit OperatorCommands(const Parts& parts);

  // To be called before the menu of that name opens.
  void mnuModMode_Click();

  void mnuModModes_Click(int32_t index);  // 1 LSB, 2 USB, 3 CW
  void mnuPTT_ON_Click();
  void mnuPTT_OFF_Click();
  void optTXRX_MouseDown(int32_t index);  // 0 transmit, else receive

 private:
  Parts parts_;
  Connections connections_;
};

}  // namespace velt

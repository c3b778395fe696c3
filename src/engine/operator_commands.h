// What the operator asks for by menu and button: mode, transmit, receive. It goes to the engine, by
// its keys, while the engine's window is there, and else to the transceiver.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "dialogs/message_line.h"
#include "engine/key_runner.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "ports/engine_window.h"
#include "ports/prompts.h"
#include "rig/ptt.h"
#include "rig/rig_control.h"

namespace velt {

class OperatorCommands {
 public:
  struct Parts {
    RigControls& form;
    PanelControls& panel;
    ScopeControl& scope;
    RigControl& control;
    Ptt& ptt;
    const Installation& installation;
    KeyRunner& keys;
    MessageLine& messages;
  };
  struct Ports {
    EngineWindow& window;
    Prompts& prompts;
  };
  OperatorCommands(const Parts& parts, const Ports& ports);

  // To be called before the menu of that name opens.
  void mnuModMode_Click();

  void mnuModModes_Click(int32_t index);  // 1 LSB, 2 USB, 3 CW
  void mnuPTT_ON_Click();
  void mnuPTT_OFF_Click();
  void optTXRX_MouseDown(int32_t index);  // 0 transmit, else receive

  // Has the engine choose LSB, USB or CW, as the display's halves do; nothing without an engine.
  void SendEngineMode(const char* mode);

  // Sets the mode whose name the box shows.
  void cmbPresetMode_Click();
  // Asks for a name to be added to the box.
  void cmbPresetMode_DblClick();

 private:
  bool EnginePresent() const { return parts_.installation.DetectVELTWindow(ports_.window) != 0; }
  void Transmit();
  void Receive();
  void AddMode(const std::optional<std::string>& answer);

  Parts parts_;
  Ports ports_;
  Connections connections_;
};

}  // namespace velt

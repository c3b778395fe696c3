// The CAT dialog `frmOmniRig`: starts and stops the link, chooses rig and VFO, shows what the rig
// reports and takes the servers' addresses and the transmission limit. It shares the main window's
// link, and its choices hold for the main window at once.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "form/omnirig_form.h"
#include "platform/on_top.h"
#include "ports/omnirig.h"
#include "ports/prompts.h"
#include "ports/scheduler.h"
#include "rig/current_rig.h"
#include "rig/link_words.h"
#include "rig/omnirig_link.h"
#include "rig/ptt.h"
#include "rig/rig_state.h"

namespace velt {

class OmniRigDialog {
 public:
  struct Parts {
    OmniRigForm& form;
    IOmniRigX& server;
    OmniRigLink& link;
    RigDisplay& display;
    Ptt& ptt;
    const CurrentRig& rig;
    const EngineState& engine;
    TransmitGuard& guard;
    RigState& state;
    OnTop& onTop;
    Prompts& prompts;
    Scheduler& scheduler;
  };
  explicit OmniRigDialog(const Parts& parts);

  // Something that is kept between runs was changed: rig, VFO, addresses or limit.
  Event<> settingsChanged;

  // Shows the dialog; one that is open comes before the other windows.
  void Open();
  // Closes it; what was typed and not applied is dropped.
  void Close();

  void Refresh();

  void cmdStartStop_Click();
  void Option_Click(int16_t rigNo);
  void optVFO_Click(int16_t vfo);
  void Combo1_Click();
  void Command1_Click();
  void cmdApplyAddresses_Click();
  void txtAddress_Change();
  void txtLimit_Change();

 private:
  void Connect();
  void ShowChoices();
  void ShowSettings();
  void ShowLink(const RigLink& link);
  void ShowCommand();
  void ShowModeInForce();
  void ShowStatus();
  void ShowParams();
  bool ApplyAddresses();
  void Tick();
  std::array<TextBox*, 2> AddressFields() {
    return {&parts_.form.txtAddress1, &parts_.form.txtAddress2};
  }

  Parts parts_;
  Scheduler::Handle tick_;
  OnTop::Lowered lowered_;  // while it is open
  Connections connections_;
};

}  // namespace velt

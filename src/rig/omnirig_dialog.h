// The CAT dialog `frmOmniRig`: starts and stops the link, chooses rig and VFO, shows what the rig
// reports and takes the servers' addresses and the transmission limit. It shares the main window's
// link, and its choices hold for the main window at once.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "form/omnirig_form.h"
#include "ports/omnirig.h"
#include "ports/prompts.h"
#include "ports/scheduler.h"
#include "rig/current_rig.h"
#include "rig/omnirig_link.h"
#include "rig/ptt_guard.h"
#include "rig/rig_state.h"

namespace velt {

// How a link stands, in a few words for people: "Linked", "Reconnecting in 4 s", ...
std::string LinkText(const RigLink& link);

class OmniRigDialog {
 public:
  struct Neighbours {
    IOmniRigX& server;
    OmniRigLink& link;
    const CurrentRig& rig;
    PttGuard& guard;
    RigState& state;
    Prompts& prompts;
    Scheduler& scheduler;
  };

  OmniRigDialog(OmniRigForm& form, const Neighbours& neighbours);

  // Something that is kept between runs was changed: rig, VFO, addresses or limit.
  std::function<void()> settingsChanged;
  // The dialog is about to open.
  std::function<void()> opening;
  // The dialog has closed.
  std::function<void()> closed;

  // Shows the dialog; nothing when it is open.
  void Open();
  // Closes it; what was typed and not applied is dropped.
  void Close();

  // To be called after each event of a rig and whenever the link was started or stopped.
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
  void ShowStatus();
  void ShowParams();
  bool ApplyAddresses();
  void Changed() const;
  void Tick();
  std::array<TextBox*, 2> AddressFields() { return {&form_.txtAddress1, &form_.txtAddress2}; }

  OmniRigForm& form_;
  Neighbours its_;
  Scheduler::Handle tick_;
  Connections connections_;
};

}  // namespace velt

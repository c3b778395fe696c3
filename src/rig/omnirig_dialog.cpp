#include "rig/omnirig_dialog.h"

#include <algorithm>

#include "text/numbers.h"

namespace velt {
namespace {

// The countdown to the next attempt is not an event of the server's.
constexpr Milliseconds kRefreshEvery{500};

// The two CW rows are crossed on purpose. `unknown` is for what is no mode.
std::string ModeText(int32_t mode, const std::string& unknown) {
  switch (mode) {
    case PM_SSB_L:
      return "LSB";
    case PM_SSB_U:
      return "USB";
    case PM_CW_U:
      return "CW LSB";
    case PM_CW_L:
      return "CW USB";
    case PM_AM:
      return "AM";
    case PM_FM:
      return "FM";
    default:
      return mode > PM_SSB_L ? "Other" : unknown;
  }
}

int32_t ModeOf(const std::string& text) {
  if (text == "FM") return PM_FM;
  if (text == "AM") return PM_AM;
  if (text == "LSB") return PM_SSB_L;
  if (text == "USB") return PM_SSB_U;
  if (text == "CW") return PM_CW_U;
  return 0;
}

// The text of the list that stands for a mode; nullptr: none does.
const char* ListText(int32_t mode) {
  switch (mode) {
    case PM_SSB_L:
      return "LSB";
    case PM_SSB_U:
      return "USB";
    case PM_CW_U:
    case PM_CW_L:
      return "CW";
    case PM_AM:
      return "AM";
    case PM_FM:
      return "FM";
    default:
      return nullptr;
  }
}

bool IsKnown(const Label& frequency) {
  return !frequency.caption.Get().empty() && frequency.caption.Get() != "0";
}

}  // namespace

OmniRigDialog::OmniRigDialog(const Parts& parts) : parts_(parts) {
  Connect();
}

void OmniRigDialog::Connect() {
  connections_ += parts_.link.configurationWanted.Listen([this] { Open(); });
  connections_ += parts_.link.rigHeard.Listen([this] { Refresh(); });
  connections_ += parts_.form.Window.closeAsked.Listen([this] { Close(); });
  connections_ += parts_.form.cmdStartStop.clicked.Listen([this] { cmdStartStop_Click(); });
  connections_ += parts_.form.Option1.value.changed.Listen(
      [this] { Option_Click(parts_.form.Option1.value ? 1 : 2); });
  connections_ += parts_.form.Option2.value.changed.Listen(
      [this] { Option_Click(parts_.form.Option2.value ? 2 : 1); });
  for (auto& [index, button] : parts_.form.optVFO) {
    connections_ += button->value.changed.Listen([this, vfo = index, option = button.get()] {
      if (option->value) optVFO_Click(static_cast<int16_t>(vfo));
    });
  }
  connections_ += parts_.form.Combo1.listIndex.changed.Listen([this] { Combo1_Click(); });
  connections_ += parts_.form.Command1.clicked.Listen([this] { Command1_Click(); });
  connections_ +=
      parts_.form.cmdApplyAddresses.clicked.Listen([this] { cmdApplyAddresses_Click(); });
  for (TextBox* field : AddressFields())
    connections_ += field->edited.Listen([this] { txtAddress_Change(); });
  connections_ += parts_.form.txtLimit.edited.Listen([this] { txtLimit_Change(); });
}

void OmniRigDialog::Open() {
  if (parts_.form.Window.visible) return parts_.form.Window.BringForward();
  lowered_ = parts_.onTop.Lower();
  ShowSettings();
  ShowChoices();
  Refresh();
  parts_.form.Window.visible = true;
  Tick();
}

void OmniRigDialog::Close() {
  if (!parts_.form.Window.visible) return;
  parts_.form.Window.visible = false;
  tick_.Cancel();
  lowered_.reset();
}

void OmniRigDialog::Refresh() {
  parts_.form.cmdStartStop.caption = parts_.link.On() ? "Stop" : "Start";
  parts_.form.Combo1.enabled = parts_.rig.Linked();
  ShowStatus();
  ShowParams();
  ShowLink(parts_.link.Link());
  ShowModeInForce();
  ShowCommand();
}

void OmniRigDialog::cmdStartStop_Click() {
  if (parts_.link.On()) {
    parts_.link.StopOmniRig();
    parts_.display.ShowOffLine();
  } else {
    parts_.link.Start([this](bool started) {
      if (!started) {
        parts_.prompts.Tell({.title = "OmniRig",
                             .text = "OmniRig is not installed or has a wrong version number",
                             .icon = BoxIcon::Exclamation},
                            [] {});
      }
      Refresh();
    });
  }
  Refresh();
}

void OmniRigDialog::Option_Click(int16_t rigNo) {
  if (parts_.state.rigChoice == rigNo) return;
  parts_.link.ChooseRig(rigNo);
  ShowChoices();
  Refresh();
  settingsChanged.Raise();
}

void OmniRigDialog::optVFO_Click(int16_t vfo) {
  if (parts_.state.vfo == vfo) return;
  parts_.state.vfo = vfo;
  ShowChoices();
  settingsChanged.Raise();
}

void OmniRigDialog::Combo1_Click() {
  const auto index = static_cast<size_t>(parts_.form.Combo1.listIndex.Get());
  const std::vector<std::string>& modes = parts_.form.Combo1.items;
  if (!parts_.rig.Exists() || index >= modes.size()) return;
  parts_.rig->SetMode(ModeOf(modes[index]));
  // The same mode can be chosen again after the rig was set otherwise.
  parts_.form.Combo1.listIndex = -1;
}

// A bad address keeps the dialog open, so that what was typed can be put right.
void OmniRigDialog::Command1_Click() {
  if (ApplyAddresses()) Close();
}

void OmniRigDialog::cmdApplyAddresses_Click() {
  ApplyAddresses();
  Refresh();
}

void OmniRigDialog::txtAddress_Change() {
  ShowCommand();
  parts_.form.lblAddressMessage.caption = "";
  parts_.form.cmdApplyAddresses.enabled =
      Trimmed(parts_.form.txtAddress1.text.Get()) != parts_.server.Address(1) ||
      Trimmed(parts_.form.txtAddress2.text.Get()) != parts_.server.Address(2);
}

void OmniRigDialog::txtLimit_Change() {
  const std::optional<int32_t> minutes = ParseWhole(parts_.form.txtLimit.text.Get());
  const bool good = minutes && *minutes >= PttSafety::kLeastLimitMinutes &&
                    *minutes <= PttSafety::kMostLimitMinutes;
  parts_.form.lblLimitMessage.caption = good ? std::string()
                                             : "Whole minutes from 1 to 60. Still in force: " +
                                                   std::to_string(parts_.guard.LimitMinutes()) +
                                                   " min";
  if (!good || *minutes == parts_.guard.LimitMinutes()) return;
  parts_.guard.SetLimitMinutes(*minutes);
  settingsChanged.Raise();
}

void OmniRigDialog::ShowChoices() {
  parts_.form.Option1.value = parts_.state.rigChoice != 2;
  parts_.form.Option2.value = parts_.state.rigChoice == 2;
  for (auto& [index, button] : parts_.form.optVFO) button->value = index == parts_.state.vfo;
}

void OmniRigDialog::ShowSettings() {
  parts_.form.txtAddress1.text = parts_.server.Address(1);
  parts_.form.txtAddress2.text = parts_.server.Address(2);
  parts_.form.lblAddressMessage.caption = "";
  parts_.form.cmdApplyAddresses.enabled = false;
  parts_.form.txtLimit.text = std::to_string(parts_.guard.LimitMinutes());
  parts_.form.lblLimitMessage.caption = "";
}

void OmniRigDialog::ShowLink(const RigLink& link) {
  const bool linked = link.state == RigLink::State::Linked;
  const bool off = link.state == RigLink::State::Off;
  const bool simulated = parts_.server.Can().simulated;
  parts_.form.lblLink.caption = LinkText(link) + (simulated ? " (simulated rig)" : "");
  parts_.form.lblCause.caption = CauseText(link.cause);
  parts_.form.lampLink.colour = LampOf(link);
  parts_.form.lampLink.toolTip =
      simulated ? "A simulated rig: there is no radio behind it" : std::string();
  for (RigLabel* value :
       {&parts_.form.Label3, &parts_.form.Label4, &parts_.form.Label10, &parts_.form.Label6}) {
    value->stale = !linked;
  }
  // A rig that does not answer is told by its status, which holds until the link is stopped.
  parts_.form.Label8.stale = off;
  const bool lastKnown = !linked && (IsKnown(parts_.form.Label3) || IsKnown(parts_.form.Label4) ||
                                     IsKnown(parts_.form.Label10));
  parts_.form.frmReport.caption = lastKnown ? "Transceiver (last known values)" : "Transceiver";
}

// Where servers have addresses, one has to be started by hand.
void OmniRigDialog::ShowCommand() {
  const TextBox& address =
      parts_.state.rigChoice == 2 ? parts_.form.txtAddress2 : parts_.form.txtAddress1;
  const std::string command =
      parts_.server.Can().addresses ? ServerCommand(address.text) : std::string();
  parts_.form.lblCommand.caption = command;
  parts_.form.cmdCopyCommand.enabled = !command.empty();
}

void OmniRigDialog::ShowModeInForce() {
  const char* text = parts_.rig.Linked() ? ListText(parts_.rig->Mode()) : nullptr;
  const std::vector<std::string>& modes = parts_.form.Combo1.items;
  const auto found = text == nullptr ? modes.end() : std::ranges::find(modes, text);
  parts_.form.Combo1.inForce =
      found == modes.end() ? -1 : static_cast<int32_t>(found - modes.begin());
}

void OmniRigDialog::ShowStatus() {
  parts_.form.Label8.caption = parts_.rig.Exists() ? parts_.rig->StatusStr() : std::string();
}

void OmniRigDialog::ShowParams() {
  if (!parts_.rig.Exists()) return;
  parts_.form.Label3.caption = std::to_string(parts_.rig->Freq());
  parts_.form.Label4.caption = std::to_string(parts_.rig->FreqA());
  parts_.form.Label10.caption = std::to_string(parts_.rig->FreqB());
  parts_.form.Label6.caption = ModeText(parts_.rig->Mode(), parts_.engine.modeText);
}

// Takes the good addresses; false when one is bad, which leaves the one in use as it was.
bool OmniRigDialog::ApplyAddresses() {
  std::string bad;
  bool changed = false;
  int32_t rigNumber = 0;
  for (const TextBox* field : AddressFields()) {
    ++rigNumber;
    const std::string typed(Trimmed(field->text.Get()));
    if (typed == parts_.server.Address(rigNumber)) continue;
    // What is keyed at the present server is left to nobody else.
    if (parts_.server.IsAddress(typed)) parts_.ptt.LeaveServer(rigNumber);
    if (parts_.server.SetAddress(rigNumber, typed)) {
      changed = true;
    } else if (bad.empty()) {
      bad = "Rig " + std::to_string(rigNumber) + ": \"" + typed +
            "\" is not an address. Use HOST:PORT, for example 127.0.0.1:4532";
    }
  }
  txtAddress_Change();
  parts_.form.lblAddressMessage.caption = bad;
  if (changed) settingsChanged.Raise();
  return bad.empty();
}

void OmniRigDialog::Tick() {
  tick_ = parts_.scheduler.After(kRefreshEvery, [this] {
    Refresh();
    Tick();
  });
}

}  // namespace velt

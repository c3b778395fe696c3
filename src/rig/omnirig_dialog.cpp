#include "rig/omnirig_dialog.h"

#include "text/numbers.h"

namespace velt {
namespace {

// The countdown to the next attempt is not an event of the server's.
constexpr Milliseconds kRefreshEvery{500};

// The two CW rows are crossed on purpose.
std::string ModeText(int32_t mode) {
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
      return mode > PM_SSB_L ? "Other" : "";
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

}  // namespace

std::string LinkText(const RigLink& link) {
  const std::string stale = link.stale ? "Stale values, " : "";
  switch (link.state) {
    case RigLink::State::Off:
      return "Stopped";
    case RigLink::State::Linked:
      return "Linked";
    case RigLink::State::Connecting:
      return link.stale ? stale + "connecting" : "Connecting";
    case RigLink::State::Silent:
      return link.stale ? stale + "rig is silent" : "Rig is silent";
    case RigLink::State::Reconnecting:
      break;
  }
  const std::string when =
      link.retryInSeconds > 0 ? " in " + std::to_string(link.retryInSeconds) + " s" : "";
  return (link.stale ? stale + "reconnecting" : "Reconnecting") + when;
}

OmniRigDialog::OmniRigDialog(OmniRigForm& form, const Neighbours& neighbours)
    : form_(form), its_(neighbours) {
  Connect();
}

void OmniRigDialog::Connect() {
  connections_ += form_.Window.closeAsked.Listen([this] { Close(); });
  connections_ += form_.cmdStartStop.clicked.Listen([this] { cmdStartStop_Click(); });
  connections_ +=
      form_.Option1.value.changed.Listen([this] { Option_Click(form_.Option1.value ? 1 : 2); });
  connections_ +=
      form_.Option2.value.changed.Listen([this] { Option_Click(form_.Option2.value ? 2 : 1); });
  for (auto& [index, button] : form_.optVFO) {
    connections_ += button->value.changed.Listen([this, vfo = index, option = button.get()] {
      if (option->value) optVFO_Click(static_cast<int16_t>(vfo));
    });
  }
  connections_ += form_.Combo1.listIndex.changed.Listen([this] { Combo1_Click(); });
  connections_ += form_.Command1.clicked.Listen([this] { Command1_Click(); });
  connections_ += form_.cmdApplyAddresses.clicked.Listen([this] { cmdApplyAddresses_Click(); });
  for (TextBox* field : AddressFields())
    connections_ += field->edited.Listen([this] { txtAddress_Change(); });
  connections_ += form_.txtLimit.edited.Listen([this] { txtLimit_Change(); });
}

void OmniRigDialog::Open() {
  if (form_.Window.visible) return;
  if (opening) opening();
  ShowSettings();
  ShowChoices();
  Refresh();
  form_.Window.visible = true;
  Tick();
}

void OmniRigDialog::Close() {
  if (!form_.Window.visible) return;
  form_.Window.visible = false;
  tick_.Cancel();
  if (closed) closed();
}

void OmniRigDialog::Refresh() {
  form_.cmdStartStop.caption = its_.link.On() ? "Stop" : "Start";
  form_.Combo1.enabled = its_.rig.Linked();
  ShowStatus();
  ShowParams();
  ShowLink(its_.link.Link());
}

void OmniRigDialog::cmdStartStop_Click() {
  if (its_.link.On()) {
    its_.link.StopOmniRig();
  } else {
    its_.link.Start([this](bool started) {
      if (!started) {
        its_.prompts.Tell({.title = "OmniRig",
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
  if (its_.state.rigChoice == rigNo) return;
  its_.link.ChooseRig(rigNo);
  ShowChoices();
  Refresh();
  Changed();
}

void OmniRigDialog::optVFO_Click(int16_t vfo) {
  if (its_.state.vfo == vfo) return;
  its_.state.vfo = vfo;
  ShowChoices();
  Changed();
}

void OmniRigDialog::Combo1_Click() {
  const auto index = static_cast<size_t>(form_.Combo1.listIndex.Get());
  const std::vector<std::string>& modes = form_.Combo1.items;
  if (!its_.rig.Exists() || index >= modes.size()) return;
  its_.rig->SetMode(ModeOf(modes[index]));
  // The same mode can be chosen again after the rig was set otherwise.
  form_.Combo1.listIndex = -1;
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
  form_.lblAddressMessage.caption = "";
  form_.cmdApplyAddresses.enabled =
      Trimmed(form_.txtAddress1.text.Get()) != its_.server.Address(1) ||
      Trimmed(form_.txtAddress2.text.Get()) != its_.server.Address(2);
}

void OmniRigDialog::txtLimit_Change() {
  const std::optional<int32_t> minutes = ParseWhole(form_.txtLimit.text.Get());
  const bool good = minutes && *minutes >= PttSafety::kLeastLimitMinutes &&
                    *minutes <= PttSafety::kMostLimitMinutes;
  form_.lblLimitMessage.caption = good ? std::string()
                                       : "Whole minutes from 1 to 60. Still in force: " +
                                             std::to_string(its_.guard.LimitMinutes()) + " min";
  if (!good || *minutes == its_.guard.LimitMinutes()) return;
  its_.guard.SetLimitMinutes(*minutes);
  Changed();
}

void OmniRigDialog::ShowChoices() {
  form_.Option1.value = its_.state.rigChoice != 2;
  form_.Option2.value = its_.state.rigChoice == 2;
  for (auto& [index, button] : form_.optVFO) button->value = index == its_.state.vfo;
}

void OmniRigDialog::ShowSettings() {
  form_.txtAddress1.text = its_.server.Address(1);
  form_.txtAddress2.text = its_.server.Address(2);
  form_.lblAddressMessage.caption = "";
  form_.cmdApplyAddresses.enabled = false;
  form_.txtLimit.text = std::to_string(its_.guard.LimitMinutes());
  form_.lblLimitMessage.caption = "";
}

void OmniRigDialog::ShowLink(const RigLink& link) {
  const bool linked = link.state == RigLink::State::Linked;
  const bool off = link.state == RigLink::State::Off;
  form_.lblLink.caption = LinkText(link);
  form_.lampLink.colour = linked ? LampColour::Green : off ? LampColour::Grey : LampColour::Amber;
  for (RigLabel* value : {&form_.Label3, &form_.Label4, &form_.Label10, &form_.Label6}) {
    value->stale = !linked;
  }
  // A rig that does not answer is told by its status, which holds until the link is stopped.
  form_.Label8.stale = off;
  const bool lastKnown = !linked && !form_.Label8.caption.Get().empty();
  form_.frmReport.caption = lastKnown ? "Transceiver (last known values)" : "Transceiver";
}

void OmniRigDialog::ShowStatus() {
  if (its_.rig.Exists()) form_.Label8.caption = its_.rig->StatusStr();
}

void OmniRigDialog::ShowParams() {
  if (!its_.rig.Exists()) return;
  form_.Label3.caption = std::to_string(its_.rig->Freq());
  form_.Label4.caption = std::to_string(its_.rig->FreqA());
  form_.Label10.caption = std::to_string(its_.rig->FreqB());
  form_.Label6.caption = ModeText(its_.rig->Mode());
}

// Takes the good addresses; false when one is bad, which leaves the one in use as it was.
bool OmniRigDialog::ApplyAddresses() {
  std::string bad;
  bool changed = false;
  int32_t rigNumber = 0;
  for (const TextBox* field : AddressFields()) {
    ++rigNumber;
    const std::string typed(Trimmed(field->text.Get()));
    if (typed == its_.server.Address(rigNumber)) continue;
    if (its_.server.SetAddress(rigNumber, typed)) {
      changed = true;
    } else if (bad.empty()) {
      bad = "Rig " + std::to_string(rigNumber) + ": \"" + typed +
            "\" is no address. Use HOST:PORT, for example 127.0.0.1:4532";
    }
  }
  txtAddress_Change();
  form_.lblAddressMessage.caption = bad;
  if (changed) Changed();
  return bad.empty();
}

void OmniRigDialog::Changed() const {
  if (settingsChanged) settingsChanged();
}

void OmniRigDialog::Tick() {
  tick_ = its_.scheduler.After(kRefreshEvery, [this] {
    Refresh();
    Tick();
  });
}

}  // namespace velt

#include "engine/operator_commands.h"

#include <array>
#include <map>
#include <utility>
#include <vector>

#include "text/formats.h"

namespace velt {
namespace {

constexpr const char* kReceiveKeys = "(^r)";
constexpr const char* kTransmitKeys = "(^t)";

// The engine's keys for the modes that it has.
const std::map<std::string, std::string> kModeKeys{{"LSB", "(^l)"},   {"USB", "(^u)"},
                                                   {"CW", "(^w)"},    {"DRM", "(^d)"},
                                                   {"ASCII", "(^i)"}, {"DIG", "(^i)"}};

// The rig's modes by the names in the box.
const std::map<std::string, std::string> kRigModes{
    {"LSB", "LSB"},     {"USB", "USB"}, {"CW", "CW-USB"}, {"CW-u", "CW-USB"},
    {"CW-l", "CW-LSB"}, {"AM", "AM"},   {"FM", "FM"},     {"DIG", "DIG"}};

}  // namespace

OperatorCommands::OperatorCommands(const Parts& parts, const Ports& ports)
    : parts_(parts), ports_(ports) {
  RigControls& form = parts_.form;
  connections_ += form.mnuModMode.clicked.Listen([this] { mnuModMode_Click(); });
  for (auto& [index, item] : form.mnuModModes) {
    connections_ += item->clicked.Listen([this, mode = index] { mnuModModes_Click(mode); });
  }
  connections_ += form.mnuPTT_ON.clicked.Listen([this] { mnuPTT_ON_Click(); });
  connections_ += form.mnuPTT_OFF.clicked.Listen([this] { mnuPTT_OFF_Click(); });
  for (auto& [index, button] : form.optTXRX) {
    connections_ += button->mouseDown.Listen([this, side = index](int mouseButton) {
      if (mouseButton == 1) optTXRX_MouseDown(side);
    });
  }
  connections_ +=
      parts_.panel.cmbPresetMode.doubleClicked.Listen([this] { cmbPresetMode_DblClick(); });
}

void OperatorCommands::mnuModMode_Click() {
  const std::string mode = Raised(parts_.form.lblMode.caption.Get());
  parts_.form.mnuModModes[1].checked = mode == "LSB";
  parts_.form.mnuModModes[2].checked = mode == "USB";
  parts_.form.mnuModModes[3].checked = mode.starts_with("CW");
}

void OperatorCommands::mnuModModes_Click(int32_t index) {
  static constexpr std::array<const char*, 4> kTexts = {"", "LSB", "USB", "CW-USB"};
  static constexpr std::array<const char*, 4> kKeys = {"", "(^l)", "(^u)", "(^w)"};
  const auto entry = static_cast<size_t>(index);
  if (EnginePresent()) parts_.keys.Run(CommandScript(kKeys.at(entry)));
  parts_.control.SetModulationMode(kTexts.at(entry));
}

void OperatorCommands::mnuPTT_ON_Click() {
  Transmit();
}

void OperatorCommands::mnuPTT_OFF_Click() {
  Receive();
}

void OperatorCommands::optTXRX_MouseDown(int32_t index) {
  index == 0 ? Transmit() : Receive();
  parts_.scope.SetFocus();
}

void OperatorCommands::Transmit() {
  if (EnginePresent()) {
    parts_.keys.Run(CommandScript(kTransmitKeys));
  } else {
    parts_.ptt.PTT_ON();
  }
}

// The engine may not listen, or something else may have keyed: the transmitter is released besides.
void OperatorCommands::Receive() {
  if (EnginePresent()) parts_.keys.RunInsteadOfAll(CommandScript(kReceiveKeys));
  parts_.ptt.PTT_OFF();
}

void OperatorCommands::SendEngineMode(const char* mode) {
  if (parts_.installation.enginePresent) parts_.keys.Run(CommandScript(kModeKeys.at(mode)));
}

void OperatorCommands::cmbPresetMode_Click() {
  const std::string& mode = parts_.panel.cmbPresetMode.text;
  if (EnginePresent()) {
    parts_.form.Label3.caption = "Velt Mode";
    const auto keys = kModeKeys.find(mode);
    parts_.keys.Run(keys == kModeKeys.end() ? KeyScript{ActivateStep{}, ActivateStep{}}
                                            : CommandScript(keys->second));
  } else {
    parts_.form.Label3.caption = "Rig Mode";
    const auto known = kRigModes.find(mode);
    if (known != kRigModes.end()) {
      parts_.control.SetModulationMode(known->second);
    } else if (!mode.empty()) {
      parts_.messages.Show("Mode " + mode + " is none of the rig's: not sent");
    }
  }
}

void OperatorCommands::cmbPresetMode_DblClick() {
  ports_.prompts.Input({.title = "Add Mode",
                        .prompt = "Enter the a modulation mode (CW,USB,LSB,AM,FM,DRM,DIG...):",
                        .initial = {}},
                       [this](const std::optional<std::string>& answer) { AddMode(answer); });
}

void OperatorCommands::AddMode(const std::optional<std::string>& answer) {
  if (!answer || answer->empty()) return;
  std::vector<std::string> modes = parts_.panel.cmbPresetMode.items;
  modes.push_back(*answer);
  parts_.panel.cmbPresetMode.items = std::move(modes);
}

}  // namespace velt

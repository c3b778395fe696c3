#include "engine/operator_commands.h"

#include <array>
#include <string>

namespace velt {

OperatorCommands::OperatorCommands(const Parts& parts) : parts_(parts) {
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
}

void OperatorCommands::mnuModMode_Click() {
  const std::string& mode = parts_.form.lblMode.caption;
  parts_.form.mnuModModes[1].checked = mode == "LSB";
  parts_.form.mnuModModes[2].checked = mode == "USB";
  parts_.form.mnuModModes[3].checked = mode.starts_with("CW");
}

void OperatorCommands::mnuModModes_Click(int32_t index) {
  static constexpr std::array<const char*, 4> kTexts = {"", "LSB", "USB", "CW-USB"};
  parts_.control.SetModulationMode(kTexts.at(static_cast<size_t>(index)));
}

void OperatorCommands::mnuPTT_ON_Click() {
  parts_.ptt.PTT_ON();
}

void OperatorCommands::mnuPTT_OFF_Click() {
  parts_.ptt.PTT_OFF();
}

void OperatorCommands::optTXRX_MouseDown(int32_t index) {
  if (index == 0) {
    parts_.ptt.PTT_ON();
  } else {
    parts_.ptt.PTT_OFF();
  }
  parts_.scope.SetFocus();
}

}  // namespace velt

#include "rig/rig_menus.h"

#include <array>
#include <cstdint>

#include "rig/shown_frequency.h"
#include "text/numbers.h"

namespace velt {

RigMenus::RigMenus(RigControls& form, RigState& state, const CurrentRig& rig, RigControl& control,
                   Ptt& ptt, Prompts& prompts)
    : form_(form), state_(state), rig_(rig), control_(control), ptt_(ptt), prompts_(prompts) {
  Connect();
}

void RigMenus::Connect() {
  connections_ += form_.mnuRig.clicked.Listen([this] { mnuRig_Click(); });
  connections_ += form_.mnunorig.clicked.Listen([this] { mnunorig_Click(); });
  connections_ += form_.mnuOmniRigStatus.clicked.Listen([this] { mnunorig_Click(); });
  connections_ += form_.Image3.clicked.Listen([this] { mnunorig_Click(); });
  connections_ += form_.mnuArduinoFreq.clicked.Listen([this] { mnuArduinoFreq_Click(); });
  connections_ += form_.mnuSetFreqManual.clicked.Listen([this] { mnuSetFreqManual_Click(); });
  connections_ += form_.mnuModMode.clicked.Listen([this] { mnuModMode_Click(); });
  for (auto& [index, item] : form_.mnuModModes) {
    connections_ += item->clicked.Listen([this, mode = index] { mnuModModes_Click(mode); });
  }
  connections_ += form_.mnuPTT_ON.clicked.Listen([this] { mnuPTT_ON_Click(); });
  connections_ += form_.mnuPTT_OFF.clicked.Listen([this] { mnuPTT_OFF_Click(); });
  for (auto& [index, button] : form_.optTXRX) {
    connections_ += button->mouseDown.Listen([this, side = index](int mouseButton) {
      if (mouseButton == 1) optTXRX_MouseDown(side);
    });
  }
}

void RigMenus::mnuRig_Click() {
  const bool linkLost = rig_.Exists() && !rig_.Linked();
  const bool settable = !IsRigOffLine(form_.lblFrequency) && !linkLost;
  form_.mnuSetFreqManual.enabled = settable;
  for (int32_t band = 1; band <= 9; ++band) form_.mnuBands[10 * band].enabled = settable;
}

void RigMenus::mnuModMode_Click() {
  const std::string& mode = form_.lblMode.caption;
  form_.mnuModModes[1].checked = mode == "LSB";
  form_.mnuModModes[2].checked = mode == "USB";
  form_.mnuModModes[3].checked = mode.starts_with("CW");
}

void RigMenus::mnunorig_Click() {
  if (openDialog) openDialog();
}

void RigMenus::mnuArduinoFreq_Click() {
  form_.mnuArduinoFreq.checked = !form_.mnuArduinoFreq.checked;
  if (state_.pttMethod != "ARDUINO") return;
  form_.tmrFreqcount.enabled = form_.mnuArduinoFreq.checked;
  if (form_.mnuArduinoFreq.checked) {
    form_.lblFrequency.toolTip = "Arduino Frequency in " + state_.arduinoUnit;
  } else {
    form_.lblFrequency.toolTip =
        "Transceiver Frequency or set the frequency in kc (click for options)";
    form_.lblFrequency.caption = kRigOffLine;
  }
}

void RigMenus::mnuSetFreqManual_Click() {
  prompts_.Input(
      {.title = "Set Rig Frequency", .prompt = "Enter the frequency (in kHz):", .initial = {}},
      [this](const std::optional<std::string>& answer) {
        if (answer) SetFrequencyByHand(*answer);
      });
}

void RigMenus::mnuModModes_Click(int32_t index) {
  static constexpr std::array<const char*, 4> kTexts = {"", "LSB", "USB", "CW-USB"};
  control_.SetModulationMode(kTexts.at(static_cast<size_t>(index)));
}

void RigMenus::mnuPTT_ON_Click() {
  ptt_.PTT_ON();
}

void RigMenus::mnuPTT_OFF_Click() {
  ptt_.PTT_OFF();
}

void RigMenus::optTXRX_MouseDown(int32_t index) {
  if (index == 0) {
    ptt_.PTT_ON();
  } else {
    ptt_.PTT_OFF();
  }
  if (focusScope) focusScope();
}

void RigMenus::SetFrequencyByHand(const std::string& kilohertz) {
  const double number = LeadingNumber(kilohertz);
  if (!(number > 10)) return;
  // What does not fit into 32 bits is as much out of range as the largest number that does.
  const int32_t hertz = RoundHalfEven(number * 1000).value_or(INT32_MAX);
  control_.SetTRXFrequency(hertz, state_.vfo);
  state_.bandPresetKHz = RoundHalfEven(number).value_or(state_.bandPresetKHz);
}

}  // namespace velt

#include "rig/rig_menus.h"

#include <cstdint>

#include "rig/shown_frequency.h"
#include "text/numbers.h"

namespace velt {

RigMenus::RigMenus(const Parts& parts) : parts_(parts) {
  connections_ += parts_.form.mnuRig.clicked.Listen([this] { mnuRig_Click(); });
  connections_ += parts_.form.mnunorig.clicked.Listen([this] { mnunorig_Click(); });
  connections_ += parts_.form.mnuOmniRigStatus.clicked.Listen([this] { mnunorig_Click(); });
  connections_ += parts_.form.Image3.clicked.Listen([this] { mnunorig_Click(); });
  connections_ += parts_.form.mnuArduinoFreq.clicked.Listen([this] { mnuArduinoFreq_Click(); });
  connections_ += parts_.form.mnuSetFreqManual.clicked.Listen([this] { mnuSetFreqManual_Click(); });
}

void RigMenus::mnuRig_Click() {
  const bool linkLost = parts_.rig.Exists() && !parts_.rig.Linked();
  const bool settable = !IsRigOffLine(parts_.form.lblFrequency) && !linkLost;
  parts_.form.mnuSetFreqManual.enabled = settable;
  for (int32_t band = 1; band <= 9; ++band) parts_.form.mnuBands[10 * band].enabled = settable;
}

void RigMenus::mnunorig_Click() {
  parts_.dialog.Open();
}

void RigMenus::mnuArduinoFreq_Click() {
  parts_.form.mnuArduinoFreq.checked = !parts_.form.mnuArduinoFreq.checked;
  if (parts_.state.pttMethod != "ARDUINO") return;
  parts_.form.tmrFreqcount.enabled = parts_.form.mnuArduinoFreq.checked;
  if (parts_.form.mnuArduinoFreq.checked) {
    parts_.form.lblFrequency.toolTip = "Arduino Frequency in " + parts_.state.arduinoUnit;
  } else {
    parts_.form.lblFrequency.toolTip = RigDisplay::kNoRigToolTip;
    parts_.form.lblFrequency.caption = kRigOffLine;
  }
}

void RigMenus::mnuSetFreqManual_Click() {
  // As it is shown: with two dots it is read as what it shows.
  const bool shown = ShownFrequencyHz(parts_.form.lblFrequency).value_or(0) > 0;
  parts_.prompts.Input(
      {.title = "Set Rig Frequency",
       .prompt = "Enter the frequency (in kHz):",
       .initial = shown ? parts_.form.lblFrequency.caption.Get() : std::string(),
       .example = "For example 14074 or 14074.5, or as the window shows it: 14.074.50"},
      [this](const std::optional<std::string>& answer) {
        if (!answer) return;
        RigState& state = parts_.state;
        const auto kilohertz = parts_.control.SetFrequencyByHand(*answer, state.vfo);
        if (kilohertz)
          state.bandPresetKHz = RoundHalfEven(*kilohertz).value_or(state.bandPresetKHz);
      });
}

}  // namespace velt

// The expanded rig control panel: bands and presets as buttons, the preset's mode, steps and manual
// entry of the rig's frequency.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "engine/operator_commands.h"
#include "form/main_form.h"
#include "ports/prompts.h"
#include "presets/preset_table.h"
#include "rig/rig_control.h"
#include "rig/rig_state.h"

namespace velt {

class PresetPanel {
 public:
  struct Parts {
    PanelControls& form;
    DisplayControls& displayForm;
    RigControls& rigForm;
    WindowFrame& window;
    PresetTable& presets;
    const RigState& state;
    RigControl& control;
    OperatorCommands& commands;
    Prompts& prompts;
  };
  explicit PresetPanel(const Parts& parts);

  // Fills the mode box with the names of PresetModeList.
  void ShowModes();

  // Shows the table. With `updateFull` band 0 and preset 0 become selected, without a button being
  // pressed, and every band's title is shown; else band `intBand` with its presets and the selected
  // preset's mode.
  void UpdatePresets(int16_t intBand, int16_t intFreq, bool updateFull);

  void chkExpand_Click();
  void mnuExpandedRigControl_Click();
  // mouseButton: 1 left, 2 right, which edits.
  void optBandsFreq_MouseDown(int32_t band, int mouseButton);
  void optDefFreqs_MouseDown(int32_t preset, int mouseButton);
  void cmbPresetMode_Click();
  void cmdFreqSteps_Click(int32_t index);
  void txtManualFrequency_KeyPress();  // of the Enter key

  int32_t ManualFrequencyKHz = 0;  // entered last in the panel

 private:
  void ShowTitle(int32_t band);
  void ShowPresets(int32_t band);
  void ShowMode(const std::string& mode);
  void SelectPreset(int32_t preset);
  // What pressing a button does once a prompt, if there was one, is answered.
  void BandPressed(int16_t band);
  void EditBand(int16_t band);
  void EditPreset(int16_t band, int16_t preset);
  std::string ProposedFrequency(const std::string& kept) const;
  // False when there is no frequency in the text.
  bool Tune(const std::string& kilohertz);

  Parts parts_;
  Connections connections_;
};

}  // namespace velt

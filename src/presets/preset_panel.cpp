#include "presets/preset_panel.h"

namespace velt {

PresetPanel::PresetPanel(const Parts& parts) : parts_(parts) {}

void PresetPanel::ShowModes() {
  std::vector<std::string> modes;
  std::string rest = parts_.presets.PresetModeList + ",";
  for (size_t end = 0; (end = rest.find(',')) != std::string::npos; rest.erase(0, end + 1)) {
    modes.push_back(rest.substr(0, end));
  }
  parts_.form.cmbPresetMode.items = modes;
}

void PresetPanel::UpdatePresets(int16_t, int16_t, bool updateFull) {
  if (!updateFull) return;
  parts_.presets.SelectedBand = parts_.presets.SelectedPreset = 0;
  for (int32_t band = 0; band < PresetTable::kBands; ++band) {
    const std::string& title = parts_.presets.Cell(band, PresetTable::kTitle);
    parts_.form.optBandsFreq[band].caption = title;
    parts_.rigForm.mnuBands[10 * band].caption = title;
  }
}

}  // namespace velt

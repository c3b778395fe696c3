#include "presets/band_menu.h"

#include "text/numbers.h"

namespace velt {

BandMenu::BandMenu(RigControls& form, const PresetTable& presets, RigControl& control,
                   const RigState& state)
    : presets_(presets), control_(control), state_(state) {
  for (auto& [index, item] : form.mnuBands) {
    connections_ += item->clicked.Listen([this, i = index] { mnuBands_Click(i); });
  }
}

void BandMenu::mnuBands_Click(int32_t index) {
  const std::string& text = presets_.Cell(index / 10, PresetTable::kFirstFrequency);
  const auto kilohertz = RoundHalfEven(LeadingNumber(text));
  if (kilohertz && *kilohertz > 0) control_.SetKilohertz(*kilohertz, state_.vfo);
}

}  // namespace velt

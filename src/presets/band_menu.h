// The Band menu: item 10 * b tunes to the first preset of band b.
#pragma once

#include <cstdint>

#include "form/main_form.h"
#include "presets/preset_table.h"
#include "rig/rig_control.h"
#include "rig/rig_state.h"

namespace velt {

class BandMenu {
 public:
  BandMenu(RigControls& form, const PresetTable& presets, RigControl& control,
           const RigState& state);

  // A first preset that is no whole number of kilohertz does not tune.
  void mnuBands_Click(int32_t index);

 private:
  const PresetTable& presets_;
  RigControl& control_;
  const RigState& state_;
  Connections connections_;
};

}  // namespace velt

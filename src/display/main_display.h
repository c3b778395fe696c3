// The display subsystem: its parts in order of dependence, and what the user changes of the whole
// display.
#pragma once

#include <cstdint>
#include <optional>

#include "audio/capture.h"
#include "display/analysis_tick.h"
#include "display/appearance.h"
#include "display/click_to_tune.h"
#include "display/cursor_readout.h"
#include "display/display_colours.h"
#include "display/display_options.h"
#include "display/graticule.h"
#include "display/snapshots.h"
#include "form/main_form.h"
#include "rig/rig_state.h"

namespace velt {

class MainDisplay {
 public:
  struct Parts {
    DisplayControls& form;
    WindowFrame& window;
    CaptureControls& captureForm;
    RigControls& rigForm;
    Timer& messageTimer;
    Capture& capture;
    const RigState& rig;
    const EngineState& engine;
    StatusFile& statusFile;
    RigControl& control;
    OperatorCommands& commands;
    MessageLine& messages;
    const Installation& installation;
    const PlatformHelpers& platform;
  };
  MainDisplay(const Parts& parts, const Snapshots::Ports& ports);

  // As they are kept with the settings.
  DisplayColours colours;
  DisplayOptions options;
  AnalysisTick tick;
  Graticule graticule;
  Appearance appearance;
  CursorReadout cursor;
  ClickToTune clicks;
  Snapshots snapshots;

  // Brings scale, lines and colours in step with the options and the display's place.
  void Refresh();

  // Shows other colours than those that are kept, at once; empty: those that are kept again.
  void TryColours(const std::optional<DisplayColours>& tried);
  const DisplayColours& ShownColours() const { return tried_ ? *tried_ : colours; }

  // Sizeable border while the screen size is remembered, else a fixed one.
  void ApplyBorderRule();

  void mnusettings_Click(int32_t index);
  void mnuzokamodes_Click(int32_t index);
  void chkSpecMode_Click();

 private:
  Parts parts_;
  std::optional<DisplayColours> tried_;
  Connections connections_;
};

}  // namespace velt

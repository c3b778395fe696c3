// Applies the user's colours to the window and the display.
#pragma once

#include "display/display_colours.h"
#include "display/display_options.h"
#include "form/main_form.h"
#include "rig/rig_state.h"

namespace velt {

class Appearance {
 public:
  struct Parts {
    ScopeControl& scope;
    WindowFrame& window;
    DisplayOptions& options;
    const EngineState& engine;
  };
  explicit Appearance(const Parts& parts) : parts_(parts) {}

  // Colours of window and display, border and colour of the grid lines, colour of the marker lines,
  // which is another one while the engine reports the state "off".
  void Opmaak(const DisplayColours& colours);

 private:
  Parts parts_;
};

}  // namespace velt

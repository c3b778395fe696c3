// Applies the user's colours to the window and the display.
#pragma once

#include <functional>

#include "audio/display_options.h"
#include "dialogs/display_colours.h"
#include "form/main_form.h"

namespace velt {

class Appearance {
 public:
  Appearance(Main& form, DisplayOptions& options, const DisplayColours& colours);

  // Colours of window and display, border and colour of the grid lines, colour of the marker lines.
  void Opmaak();

  // Whether the engine reports the state "off".
  std::function<bool()> engineOff;

 private:
  Main& form_;
  DisplayOptions& options_;
  const DisplayColours& colours_;
};

}  // namespace velt

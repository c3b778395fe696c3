// Where everything stands in the window: a pure function of its size.
#pragma once

#include "form/control.h"

namespace velt {

struct WindowPlaces {
  // Row 1. A place without width means that there is no room for the control at this size.
  Rectangle options, file, cat, startStop, frequency, mode, trx, transmit, receive, peak, waterfall;
  // The display between its sliders and the meter.
  Rectangle slider, scope, scales, slider2, meter;
  // The last row, and the notice that lies over the top of the display.
  Rectangle modeSource, message, notice;
  bool compactButtons = false;  // the menu buttons show a symbol instead of their text
};

// For a content of that size in logical pixels; sizes below 333 x 100 are laid out as 333 x 100.
WindowPlaces ArrangeWindow(int widthPx, int heightPx);

}  // namespace velt

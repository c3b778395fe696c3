// What lies under the cursor on the display: its sound frequency and the radio frequency that it
// stands for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "display/display_options.h"
#include "form/main_form.h"
#include "rig/rig_state.h"

namespace velt {

class CursorReadout {
 public:
  struct Parts {
    DisplayControls& form;
    RigControls& rig;
    Timer& messageTimer;  // runs while the message line shows a message
    const DisplayOptions& options;
    const EngineState& engine;
  };
  explicit CursorReadout(const Parts& parts);

  // x in pixels of the display, from its left edge.
  void Scope_MouseMove(int x);
  // The same over the waterfall of mode 0.
  void picWater_MouseMove(int x);

 private:
  void ShowOffset();
  void ShowRadioFrequency();
  void MakeRoomForMessages();

  Parts parts_;
  Connections connections_;
};

// The sound frequency at column x of `width` in the spectrum modes 69, 1 or 0 (any other), halves
// to the even hertz; in the first two from the carrier. Empty for a display without width.
std::optional<int32_t> CursorHz(int x, int width, int32_t zokaMode, int16_t scaleOffset);

// Reads the readout back: "1234Hz" or "1.234 kHz". No number counts as 0 Hz.
double ShownCursorHz(const Label& readout);

// Kilohertz with two decimals, as the frequency labels leave out the last digit: "14075.23".
std::string CursorKilohertz(int64_t frequencyHz);

}  // namespace velt

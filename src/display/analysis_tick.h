// One tick of the capture timer: takes the newest block, analyses it and passes the reading on to
// the display, the peak label and the S-meter.
#pragma once

#include <array>

#include "audio/capture.h"
#include "display/display_options.h"
#include "form/main_form.h"
#include "rig/rig_state.h"
#include "rig/status_file.h"
#include "spectrum/analysis.h"

namespace velt {

class AnalysisTick {
 public:
  struct Parts {
    CaptureControls& captureForm;
    DisplayControls& displayForm;
    Capture& capture;
    const DisplayOptions& options;
    const RigState& rig;
    const EngineState& engine;
    StatusFile& statusFile;
  };
  explicit AnalysisTick(const Parts& parts);

  void Timer1_Timer();

  // Empties the display, for a change between spectrum and waterfall.
  void ClearDisplay();

  // The picture of the last block in the colours that hold now. A waterfall stays as it ran.
  void DrawAgain();

  // What the display shows; may be smaller than the display until the next block.
  const Raster& Shown() const { return output_.display->shown; }

 private:
  AnalysisSettings Settings() const;
  Tuning TunedTo() const;

  Parts parts_;
  Analyser analyser_;
  AnalysisOutput output_;
  std::array<int16_t, kBlockSamples> block_{};
  Connections connections_;
};

}  // namespace velt

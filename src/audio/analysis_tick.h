// One tick of the capture timer: takes the newest block, analyses it and passes the reading on to
// the display, the peak label and the S-meter.
#pragma once

#include <array>

#include "audio/capture.h"
#include "audio/display_options.h"
#include "form/main_form.h"
#include "ports/audio_input.h"
#include "rig/rig_state.h"
#include "spectrum/analysis.h"

namespace velt {

class AnalysisTick {
 public:
  struct Parts {
    CaptureControls& captureForm;
    DisplayControls& displayForm;
    AudioInput& input;
    Capture& capture;
    const DisplayOptions& options;
    const RigState& rig;
    const EngineState& engine;
  };
  explicit AnalysisTick(Parts parts);

  void Timer1_Timer();

  // The size of the display in pixels; the picture follows with the next block.
  void SetDisplaySize(int32_t width, int32_t height);

  // Empties the display, for a change between spectrum and waterfall.
  void ClearDisplay();

  // What the display shows; may be smaller than the display until the next block.
  const Raster& Shown() const { return output_.display->shown; }

  // The dominant audio frequency of the last tick, in Hz.
  int32_t DominantFrequency() const { return dominantFrequencyHz_; }

 private:
  Parts p_;
  Analyser analyser_;
  AnalysisOutput output_;
  std::array<int16_t, kBlockSamples> block_{};
  int16_t width_ = 0;
  int32_t height_ = 0;
  int32_t dominantFrequencyHz_ = 0;
  Connections connections_;
};

}  // namespace velt

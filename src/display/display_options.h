// What the user chooses for the display: sensitivities, style, resolution, spectrum mode, waterfall
// and dominant peak. Keeps menu marks, controls and the analysis' settings in step.
#pragma once

#include <cstdint>

#include "form/main_form.h"
#include "spectrum/analysis_settings.h"
#include "spectrum/palette.h"

namespace velt {

class DisplayOptions {
 public:
  DisplayOptions(DisplayControls& form, RigControls& rig);

  AnalysisSettings analysis;
  WaterPalette palette;
  int32_t spectrumSensitivity = 10;
  int16_t waterGrey = 1;
  int16_t clearity = 10;

  // The waterfall's colours were built anew.
  Event<> paletteChanged;

  // The one place that sets the engine's display mode (0, 1 or 69; others are refused). Mode 0
  // also disables lblMode.
  void SetZokaMode(int32_t mode);

  // Values from 1 to 4, others are refused.
  void SetPrecision(int32_t precision);
  void ShowPrecision();

  void SetStyle(bool bars, bool oscilloscope);
  void SetWaterfall(bool shown);
  void SetWaterfallSensitivity(int32_t value);

  // Rebuilds the waterfall's colours from scheme and brightness.
  void InitWaterColor();

  void Slider_Change();
  void Slider2_Change();
  void DomFreq();
  void mnudomfreq_Click();
  void mnuprecision_Click(int32_t index);

 private:
  DisplayControls& form_;
  RigControls& rig_;
  Connections connections_;
};

}  // namespace velt

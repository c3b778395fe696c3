#include "display/display_options.h"

namespace velt {

DisplayOptions::DisplayOptions(DisplayControls& form, RigControls& rig) : form_(form), rig_(rig) {
  connections_ += form_.Slider.value.changed.Listen([this] { Slider_Change(); });
  connections_ += form_.Slider2.value.changed.Listen([this] { Slider2_Change(); });
  connections_ += form_.mnudomfreq.clicked.Listen([this] { mnudomfreq_Click(); });
  for (auto& [index, item] : form_.mnuprecision) {
    connections_ += item->clicked.Listen([this, i = index] { mnuprecision_Click(i); });
  }
}

void DisplayOptions::SetZokaMode(int32_t mode) {
  if (!form_.mnuzokamodes.Has(mode)) return;
  analysis.zokaMode = static_cast<int16_t>(mode);
  for (auto& [index, item] : form_.mnuzokamodes) item->checked = index == mode;
  if (mode == 0) rig_.lblMode.enabled = false;
}

void DisplayOptions::SetPrecision(int32_t precision) {
  if (!form_.mnuprecision.Has(precision)) return;
  analysis.precision = static_cast<int16_t>(precision);
  ShowPrecision();
}

void DisplayOptions::ShowPrecision() {
  for (auto& [index, item] : form_.mnuprecision) item->checked = index == analysis.precision;
}

void DisplayOptions::SetStyle(bool bars, bool oscilloscope) {
  analysis.useLines = bars;
  analysis.oscillosMode = oscilloscope;
}

void DisplayOptions::SetWaterfall(bool shown) {
  form_.chkSpecMode.value = shown ? 1 : 0;
}

void DisplayOptions::SetWaterfallSensitivity(int32_t value) {
  form_.Slider2.Set(value);
  analysis.waterfallSensitivity = value;
}

void DisplayOptions::InitWaterColor() {
  palette.InitWaterColor(waterGrey, clearity);
  paletteChanged.Raise();
}

void DisplayOptions::Slider_Change() {
  const auto divisor =
      SpectrumDivisor(form_.Slider.value, form_.Slider.maximum, spectrumSensitivity);
  if (divisor) analysis.spectrumDivisor = *divisor;
}

void DisplayOptions::Slider2_Change() {
  analysis.waterfallSensitivity = form_.Slider2.value;
}

void DisplayOptions::DomFreq() {
  const bool wanted = form_.mnudomfreq.checked;
  form_.lblFreqDetect.caption = wanted ? "0kc" : "";
  form_.lblFreqDetect.visible = wanted;
  analysis.dominantPeak = wanted;
}

void DisplayOptions::mnudomfreq_Click() {
  form_.mnudomfreq.checked = !form_.mnudomfreq.checked;
  DomFreq();
}

void DisplayOptions::mnuprecision_Click(int32_t index) {
  SetPrecision(index);
}

}  // namespace velt

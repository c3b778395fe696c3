#include "display/analysis_tick.h"

#include "text/numbers.h"

namespace velt {

AnalysisTick::AnalysisTick(const Parts& parts) : parts_(parts) {
  output_.display.emplace();
  connections_ += parts_.captureForm.Timer1.ticked.Listen([this] { Timer1_Timer(); });
}

void AnalysisTick::ClearDisplay() {
  output_.display.emplace();
  parts_.displayForm.Scope.frame = parts_.displayForm.Scope.frame + 1;
}

void AnalysisTick::DrawAgain() {
  const Raster& shown = output_.display->shown;
  AnalysisSettings settings = Settings();
  if (settings.waterfall || shown.Width() == 0) return;
  settings.plotWidth = static_cast<int16_t>(shown.Width());
  settings.plotHeight = shown.Height();
  analyser_.DrawAgain(settings, TunedTo().passband, *output_.display);
  parts_.displayForm.Scope.frame = parts_.displayForm.Scope.frame + 1;
}

AnalysisSettings AnalysisTick::Settings() const {
  AnalysisSettings settings = parts_.options.analysis;
  const ScopeControl& scope = parts_.displayForm.Scope;
  settings.plotWidth = RoundHalfEven16(scope.scaleWidth.Get()).value_or(settings.plotWidth);
  settings.plotHeight = scope.scaleHeight;
  settings.scaleOffset = parts_.engine.scaleOffset;
  return settings;
}

Tuning AnalysisTick::TunedTo() const {
  return {parts_.rig.RealRigFrequency, {parts_.engine.passbandLow, parts_.engine.passbandHigh}};
}

void AnalysisTick::Timer1_Timer() {
  if (!parts_.capture.TakeBlock(block_)) return;
  const Reading reading =
      analyser_.Analyse(block_, Settings(), TunedTo(), parts_.options.palette, output_);

  DisplayControls& form = parts_.displayForm;
  if (reading.freqDetectText) form.lblFreqDetect.caption = *reading.freqDetectText;
  form.lblFreqDetect.stale = reading.silent;
  form.Smeter.topTwips = -reading.smeterLevelTwips;
  parts_.statusFile.SetDominantFrequency(reading.dominantFrequencyHz);
  if (reading.displayChanged) form.Scope.frame = form.Scope.frame + 1;
}

}  // namespace velt

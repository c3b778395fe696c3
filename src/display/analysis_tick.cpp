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

void AnalysisTick::Timer1_Timer() {
  if (!parts_.capture.TakeBlock(block_)) return;
  AnalysisSettings settings = parts_.options.analysis;
  const ScopeControl& scope = parts_.displayForm.Scope;
  settings.plotWidth = RoundHalfEven16(scope.scaleWidth.Get()).value_or(settings.plotWidth);
  settings.plotHeight = scope.scaleHeight;
  settings.scaleOffset = parts_.engine.scaleOffset;
  const Tuning tuning{parts_.rig.RealRigFrequency,
                      {parts_.engine.passbandLow, parts_.engine.passbandHigh}};
  const Reading reading =
      analyser_.Analyse(block_, settings, tuning, parts_.options.palette, output_);

  DisplayControls& form = parts_.displayForm;
  if (reading.freqDetectText) form.lblFreqDetect.caption = *reading.freqDetectText;
  form.lblFreqDetect.stale = reading.silent;
  form.Smeter.topTwips = -reading.smeterLevelTwips;
  parts_.statusFile.SetDominantFrequency(reading.dominantFrequencyHz);
  if (reading.displayChanged) form.Scope.frame = form.Scope.frame + 1;
}

}  // namespace velt

#include "audio/analysis_tick.h"

#include "text/numbers.h"

namespace velt {

AnalysisTick::AnalysisTick(Parts parts) : p_(parts) {
  output_.display.emplace();
  connections_ += p_.captureForm.Timer1.ticked.Listen([this] { Timer1_Timer(); });
}

void AnalysisTick::SetDisplaySize(int32_t width, int32_t height) {
  width_ = RoundHalfEven16(width).value_or(width_);
  height_ = height;
}

void AnalysisTick::ClearDisplay() {
  output_.display.emplace();
  p_.displayForm.Scope.frame = p_.displayForm.Scope.frame + 1;
}

void AnalysisTick::Timer1_Timer() {
  switch (p_.input.TakeNewest(block_)) {
    case TakeResult::Gone:
      p_.capture.DeviceGone();
      return;
    case TakeResult::NotYet:
      p_.capture.NothingDelivered();
      return;
    case TakeResult::Block:
      p_.capture.Delivered();
      break;
  }
  AnalysisSettings settings = p_.options.analysis;
  settings.plotWidth = width_;
  settings.plotHeight = height_;
  settings.scaleOffset = p_.engine.scaleOffset;
  const Tuning tuning{p_.rig.RealRigFrequency, {p_.engine.passbandLow, p_.engine.passbandHigh}};
  const Reading reading = analyser_.Analyse(block_, settings, tuning, p_.options.palette, output_);

  DisplayControls& form = p_.displayForm;
  if (reading.freqDetectText) form.lblFreqDetect.caption = *reading.freqDetectText;
  form.Smeter.topTwips = -reading.smeterLevelTwips;
  dominantFrequencyHz_ = reading.dominantFrequencyHz;
  if (reading.displayChanged) form.Scope.frame = form.Scope.frame + 1;
}

}  // namespace velt

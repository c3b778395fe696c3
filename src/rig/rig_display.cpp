#include "rig/rig_display.h"

#include "rig/shown_frequency.h"
#include "text/formats.h"
#include "text/numbers.h"

namespace velt {

RigDisplay::RigDisplay(RigControls& form, RigState& state, const EngineState& engine,
                       const CurrentRig& rig, StatusFile& statusFile)
    : form_(form), state_(state), engine_(engine), rig_(rig), statusFile_(statusFile) {
  connections_ += form_.lblFrequency.caption.changed.Listen([this] { lblFrequency_Change(); });
}

void RigDisplay::ShowRigParams() {
  if (!rig_.Exists()) return;
  const bool transmits = rig_->GetTxFrequency() > 2;
  form_.lblTRXMode.caption = transmits ? "TX" : "RX";
  const int32_t frequency = transmits ? rig_->GetTxFrequency() : rig_->GetRxFrequency();
  const bool offLine = frequency < 1 && rig_->GetTxFrequency() < 1;
  // A rig that is off leaves the label to the counter.
  if (!offLine || !form_.tmrFreqcount.enabled) {
    TakeFrequency(frequency);
    form_.lblFrequency.caption = offLine ? kRigOffLine : FrequencyToShow(frequency);
  }
  form_.lblTRXMode.enabled = !offLine;
  form_.mnunorig.checked = offLine;
  if (!form_.tmrFreqcount.enabled) statusFile_.WriteStatusRX(state_.RealRigFrequency);
  ShowMode();
  MarkStale(rig_->Link().stale);
}

void RigDisplay::TakeFrequency(int32_t frequencyHz) {
  state_.RealRigFrequency = frequencyHz;
  state_.scaleAnchorHz = Clamp32(int64_t{WrapMultiply16(state_.offsetKHz, 1000)} +
                                 engine_.scaleOffset + state_.RealRigFrequency);
}

void RigDisplay::ShowRigStatus() {
  if (!rig_.Exists()) return;
  form_.lblFrequency.toolTip =
      "Transceiver Frequency. Click to set TRX. RIG STATUS: " + rig_->StatusStr();
  MarkStale(rig_->Link().stale);
  statusShown.Raise();
}

void RigDisplay::MarkStale(bool stale) {
  for (RigLabel* label :
       {&form_.lblFrequency, &form_.lblFrequencyExpand, &form_.lblMode, &form_.lblTRXMode}) {
    label->stale = stale;
  }
}

void RigDisplay::ShowOffLine() {
  form_.lblFrequency.caption = kRigOffLine;
  form_.lblFrequency.toolTip = kNoRigToolTip;
  form_.lblMode.caption = "N/A";
  form_.lblTRXMode.caption = "RX";
  form_.lblTRXMode.enabled = false;
  form_.mnunorig.checked = true;
  MarkStale(false);
  statusShown.Raise();
}

void RigDisplay::lblFrequency_Change() {
  form_.lblFrequencyExpand.caption = form_.lblFrequency.caption;
}

std::string RigDisplay::FrequencyToShow(int32_t frequencyHz) {
  const bool locked = Lowered(engine_.transmitterModeLine) == "lock_to_txcr" &&
                      form_.lblTRXMode.caption.Get() == "TX" && state_.offsetKHz != 0;
  if (!locked) {
    return FrequencyText(Clamp32(int64_t{WrapMultiply16(state_.offsetKHz, 1000)} + frequencyHz));
  }
  FollowShownFrequency(frequencyHz);
  return FrequencyText(frequencyHz);
}

// The transmitter has to be where the label says before the label follows the transmitter.
void RigDisplay::FollowShownFrequency(int32_t frequencyHz) {
  if (ShownMegahertzInHz(form_.lblFrequency) == frequencyHz) return;
  const std::optional<int32_t> shown = ShownFrequencyHz(form_.lblFrequency);
  if (shown) rig_->SetFreq(*shown);
}

void RigDisplay::ShowMode() {
  switch (rig_->Mode()) {
    case PM_AM:
      form_.lblMode.caption = "AM";
      break;
    case PM_FM:
      form_.lblMode.caption = "FM";
      break;
    case PM_SSB_L:
      form_.lblMode.caption = "LSB";
      break;
    case PM_SSB_U:
      form_.lblMode.caption = "USB";
      break;
    case PM_CW_U:
      form_.lblMode.caption = "CWu";
      break;
    case PM_CW_L:
      form_.lblMode.caption = "CWl";
      break;
    default:
      form_.lblMode.caption = engine_.modeText;
  }
}

}  // namespace velt

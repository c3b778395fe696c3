#include "rig/rig_control.h"

#include <array>
#include <cstdlib>
#include <utility>

#include "rig/shown_frequency.h"
#include "text/formats.h"
#include "text/numbers.h"

namespace velt {
namespace {

// A mode text and what it sends, by where the text comes from and whether the rig's sideband
// mirrors the engine's. 0 sends nothing.
struct ModeRow {
  const char* text;
  int32_t given;
  int32_t givenInverted;
  int32_t shown;
  int32_t shownInverted;
};

// The columns for a shown text are the mirror of those for a given one, on purpose.
constexpr std::array<ModeRow, 7> kModes = {{
    {"USB", PM_SSB_U, PM_SSB_L, PM_SSB_L, PM_SSB_U},
    {"LSB", PM_SSB_L, PM_SSB_U, PM_SSB_U, PM_SSB_L},
    {"CW-USB", PM_CW_U, PM_CW_L, 0, 0},
    {"CW-LSB", PM_CW_L, PM_CW_U, 0, 0},
    {"FM", PM_FM, PM_FM, PM_FM, PM_FM},
    {"AM", PM_AM, PM_AM, PM_AM, PM_AM},
    {"DIG", PM_DIG_U, PM_DIG_U, PM_DIG_U, PM_DIG_U},
}};

int32_t ModeFor(const std::string& text, bool fromLabel, bool inverted) {
  if (fromLabel && text.find("CW") != std::string::npos) return inverted ? PM_CW_L : PM_CW_U;
  for (const ModeRow& row : kModes) {
    if (text != row.text) continue;
    if (fromLabel) return inverted ? row.shownInverted : row.shown;
    return inverted ? row.givenInverted : row.given;
  }
  return 0;
}

// What does not fit into 32 bits is as much out of range as the largest number that does.
int32_t NearestHz(double frequencyHz) {
  return RoundHalfEven(frequencyHz).value_or(INT32_MAX);
}

bool InRange(int64_t frequencyHz) {
  return frequencyHz >= RigControl::kLowestHz && frequencyHz <= RigControl::kHighestHz;
}

}  // namespace

RigControl::RigControl(const Parts& parts) : parts_(parts), restore_(parts.scheduler) {}

void RigControl::SetTRXFrequency(int32_t frequencyHz, int16_t vfo) {
  if (Blocked() || RefusedWithoutLink()) return;
  if (Tune(int64_t{frequencyHz} - WrapMultiply16(parts_.state.offsetKHz, 1000), vfo))
    parts_.messages.Show("Updating VFO...");
}

void RigControl::TuneTo(double frequencyHz) {
  if (!parts_.rig.Exists() || RefusedWithoutLink()) return;
  if (Tune(NearestHz(frequencyHz), 0)) parts_.messages.Show("Updating VFO...");
}

void RigControl::SetKilohertz(double kilohertz, int16_t vfo) {
  if (Blocked()) return TellNoLink();
  SetTRXFrequency(NearestHz(kilohertz * 1000), vfo);
}

std::optional<double> RigControl::FrequencyByHand(const std::string& typed) const {
  const double kilohertz = TypedKilohertz(typed);
  if (kilohertz > 10) return kilohertz;
  parts_.messages.Show("Nothing set: no kHz above 10 in \"" + typed + "\"");
  return std::nullopt;
}

std::optional<double> RigControl::SetFrequencyByHand(const std::string& typed, int16_t vfo) {
  const std::optional<double> kilohertz = FrequencyByHand(typed);
  if (kilohertz) SetKilohertz(*kilohertz, vfo);
  return kilohertz;
}

void RigControl::StepBy(int32_t stepHz) {
  if (!parts_.rig.Exists()) return TellNoLink();
  if (RefusedWithoutLink()) return;
  // After transmitting it may not be back yet where the operator left it.
  const bool moved = IsMovingBack() && shift_->vfo == 0 && StandsWhereItWasShifted();
  const int32_t fromHz = moved ? parts_.state.savedRigFrequency : parts_.rig->Freq();
  Tune(int64_t{fromHz} + stepHz, 0);
}

void RigControl::Step(int32_t stepHz) {
  if (ShownFrequencyHz(parts_.form.lblFrequency).value_or(0) <= 0) return;
  if (stepHz != 0) StepBy(stepHz);
  if (parts_.rig.Exists()) parts_.display.ShowRigParams();
}

void RigControl::SetTRXShift(int16_t shiftKHz, bool shiftTheRig, int16_t vfo) {
  if (shiftKHz == 0 || !parts_.rig.Exists()) return;
  if (shiftTheRig) {
    ShiftAway(vfo);
  } else if (shift_) {
    restore_.Arm([this] { return MoveBack(); });
  }
}

void RigControl::RestoreNow() {
  if (shift_) MoveBack();
  restore_.Disarm();
  // Whether it could be moved or not: the saved frequency is nobody's any more.
  shift_.reset();
}

std::string RigControl::SetModulationMode(const std::string& modulatie) {
  const bool fromLabel = modulatie.empty();
  std::string text = fromLabel ? parts_.form.lblMode.caption.Get() : modulatie;
  if (Blocked()) return text;
  const bool inverted = Lowered(Trimmed(parts_.state.invertedSideband)) == "on";
  const int32_t mode = ModeFor(text, fromLabel, inverted);
  if (mode != 0 && !RefusedWithoutLink()) parts_.rig->SetMode(mode);
  return text;
}

void RigControl::SendMode(int32_t mode) {
  if (!Blocked() && !RefusedWithoutLink()) parts_.rig->SetMode(mode);
}

bool RigControl::TellRefusal(const RefusedWrite& write) const {
  parts_.messages.Show(write.isMode ? "The rig did not take the mode"
                                    : "The rig did not take " + FrequencyText(write.value));
  return !write.isMode && shift_ && shift_->frequencyHz == write.value;
}

bool RigControl::RefusedWithoutLink() const {
  if (parts_.rig.Linked()) return false;
  TellNoLink();
  return true;
}

void RigControl::TellNoLink() const {
  parts_.messages.Show("No link to the rig: nothing was sent");
}

bool RigControl::Blocked() const {
  return parts_.form.lblFrequencyExpand.caption.Get() == "N/A" || !parts_.rig.Exists();
}

void RigControl::ShiftAway(int16_t vfo) {
  if (!parts_.rig.Linked()) return;
  if (IsMovingBack() && !StandsWhereItWasShifted()) shift_.reset();
  if (shift_) {
    // Keyed again before the rig was back: it stands where it transmits, and what is shown has the
    // offset once more on top of that.
    if (IsMovingBack()) Write(shift_->frequencyHz, shift_->vfo);
    restore_.Disarm();
    return;
  }
  const std::optional<int32_t> shown = ShownFrequencyHz(parts_.form.lblFrequency);
  if (!shown || !InRange(*shown)) return;
  restore_.Disarm();
  parts_.state.savedRigFrequency = parts_.rig->GetRxFrequency();
  shift_ = Shift{vfo, *shown};
  Write(*shown, vfo);
}

// False while the link is lost: the rig still has to be moved.
bool RigControl::MoveBack() {
  if (!parts_.rig.Exists() || !shift_) return true;
  if (!parts_.rig.Linked()) return false;
  const bool movedOn = restore_.Late() && !StandsWhereItWasShifted();
  const int16_t vfo = std::exchange(shift_, std::nullopt)->vfo;
  if (!movedOn && InRange(parts_.state.savedRigFrequency))
    Write(parts_.state.savedRigFrequency, vfo);
  parts_.display.ShowRigParams();
  return true;
}

// After a lost link the operator may have tuned the rig by hand; rigs round what they are sent.
bool RigControl::StandsWhereItWasShifted() const {
  if (!shift_) return false;
  int32_t now = parts_.rig->Freq();
  if (shift_->vfo == 1 || shift_->vfo == 3) now = parts_.rig->FreqA();
  if (shift_->vfo == 2) now = parts_.rig->FreqB();
  return std::abs(int64_t{now} - shift_->frequencyHz) < 1000;
}

// False, and told, when the frequency is out of range.
bool RigControl::Tune(int64_t frequencyHz, int16_t vfo) {
  if (!InRange(frequencyHz)) {
    parts_.messages.Show("Not sent: outside 10 kHz to 2 GHz");
    return false;
  }
  if (restore_.Late() || (IsMovingBack() && shift_->vfo == vfo)) {
    // The user has moved on while the link was lost, or before the rig was back.
    restore_.Disarm();
    shift_.reset();
  }
  Write(static_cast<int32_t>(frequencyHz), vfo);
  return true;
}

void RigControl::Write(int32_t frequencyHz, int16_t vfo) {
  if (vfo == 0) parts_.rig->SetFreq(frequencyHz);
  if (vfo == 2 || vfo == 3) parts_.rig->SetFreqB(frequencyHz);
  if (vfo == 1 || vfo == 3) parts_.rig->SetFreqA(frequencyHz);
}

}  // namespace velt

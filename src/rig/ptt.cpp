#include "rig/ptt.h"

#include <utility>

namespace velt {

Ptt::Ptt(RigControls& form, RigState& state, const CurrentRig& rig, RigControl& control,
         RigDisplay& display, PttGuard& guard)
    : form_(form), state_(state), rig_(rig), control_(control), display_(display), guard_(guard) {}

void Ptt::PTT_ON() {
  if (state_.pttMethod == "NONE") {
    if (!KeyByLink()) return SelectButton(1);
  } else if (keyBySerialPort) {
    keyBySerialPort(true);
  }
  SelectButton(0);
}

void Ptt::PTT_OFF() {
  if (state_.pttMethod == "NONE") {
    ReleaseByLink();
  } else if (keyBySerialPort) {
    keyBySerialPort(false);
  }
  SelectButton(1);
}

void Ptt::TransmissionEnded(int32_t rigNumber) {
  if (rigNumber != rig_.Number()) return;
  BackToReceive();
  SelectButton(1);
}

void Ptt::LeaveRig(bool closing) {
  if (guard_.Holds(rig_.Number())) PTT_OFF();
  if (closing) guard_.ReleaseNow();
  control_.RestoreNow();
}

bool Ptt::KeyByLink() {
  if (control_.RefusedWithoutLink()) return false;
  if (!guard_.Key(rig_.Number())) return false;
  form_.lblTRXMode.caption = "TX";
  if (!keyedWith_) keyedWith_ = Shift{state_.offsetKHz, state_.vfo};
  control_.SetTRXShift(keyedWith_->kHz, true, keyedWith_->vfo);
  display_.ShowRigParams();
  return true;
}

void Ptt::ReleaseByLink() {
  // What this program keyed is released even over a lost link: once it is back, before all else.
  if (!guard_.Holds(rig_.Number()) && control_.RefusedWithoutLink()) return;
  guard_.Release(rig_.Number());
  BackToReceive();
}

void Ptt::BackToReceive() {
  form_.lblTRXMode.caption = "RX";
  const Shift shift =
      std::exchange(keyedWith_, std::nullopt).value_or(Shift{state_.offsetKHz, state_.vfo});
  control_.SetTRXShift(shift.kHz, false, shift.vfo);
  display_.ShowRigParams();
}

void Ptt::SelectButton(int32_t index) {
  form_.optTXRX[index].value = true;
  form_.optTXRX[1 - index].value = false;
}

}  // namespace velt

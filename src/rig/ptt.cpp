#include "rig/ptt.h"

#include <utility>

namespace velt {

Ptt::Ptt(const Parts& parts)
    : parts_(parts), cat_{CatKeyer(parts.server, 1), CatKeyer(parts.server, 2)} {
  for (CatKeyer& keyer : cat_) parts_.guard.Add(keyer);
  connections_ += parts_.guard.ended.Listen(
      [this](const Keyer& keyer, TransmitGuard::Cause cause) { TransmissionEnded(keyer, cause); });
}

void Ptt::PTT_ON(TransmitOwner owner) {
  if (parts_.state.pttMethod == "NONE" && KeyByLink(owner)) {
    SelectButton(0);
  } else {
    // What is on already stays selected.
    const CatKeyer* inUse = KeyerInUse();
    if (inUse == nullptr || !parts_.guard.Holds(*inUse)) SelectButton(1);
  }
}

void Ptt::PTT_OFF(TransmitOwner owner) {
  if (owner != TransmitOwner::Operator) {
    if (!parts_.guard.Release(owner)) return;
  } else {
    CatKeyer* inUse = KeyerInUse();
    // What this program keyed is released even over a lost link: once it is back, before all else.
    // What others keyed is not: by then it may be another transmission.
    const bool sendable = inUse != nullptr && inUse->Look().reachable;
    const bool held = inUse != nullptr && parts_.guard.Holds(*inUse);
    if (!sendable && !held) parts_.control.RefusedWithoutLink();
    parts_.guard.ReleaseAll(sendable ? inUse : nullptr);
  }
  BackToReceive();
}

void Ptt::LeaveRig(bool closing) {
  for (CatKeyer& keyer : cat_) {
    if (closing || &keyer == KeyerInUse()) LeaveServer(keyer.RigNumber());
  }
  parts_.control.RestoreNow();
}

void Ptt::LeaveServer(int32_t rigNumber) {
  CatKeyer& keyer = cat_.at(rigNumber == 2 ? 1 : 0);
  if (!parts_.guard.Holds(keyer)) return;
  const bool inUse = &keyer == KeyerInUse();
  parts_.guard.Leave(keyer);
  if (!inUse) return;
  parts_.control.RestoreNow();
  BackToReceive();
}

// Null without a rig object.
CatKeyer* Ptt::KeyerInUse() {
  const int32_t number = parts_.rig.Number();
  return number == 1 || number == 2 ? &cat_.at(static_cast<size_t>(number) - 1) : nullptr;
}

bool Ptt::KeyByLink(TransmitOwner owner) {
  CatKeyer* keyer = KeyerInUse();
  if (parts_.control.RefusedWithoutLink() || keyer == nullptr) return false;
  if (!parts_.guard.Key(owner, *keyer)) return false;
  parts_.form.lblTRXMode.caption = "TX";
  if (!keyedWith_) keyedWith_ = Shift{parts_.state.offsetKHz, parts_.state.vfo};
  parts_.control.SetTRXShift(keyedWith_->kHz, true, keyedWith_->vfo);
  parts_.display.ShowRigParams();
  return true;
}

void Ptt::TransmissionEnded(const Keyer& keyer, TransmitGuard::Cause cause) {
  if (&keyer != KeyerInUse()) return;
  // A rig that never transmitted has nothing to settle before it is moved back.
  if (cause == TransmitGuard::Cause::Refused) parts_.control.RestoreNow();
  BackToReceive();
}

void Ptt::BackToReceive() {
  parts_.form.lblTRXMode.caption = "RX";
  if (const auto shift = std::exchange(keyedWith_, std::nullopt)) {
    parts_.control.SetTRXShift(shift->kHz, false, shift->vfo);
  }
  parts_.display.ShowRigParams();
  SelectButton(1);
}

void Ptt::SelectButton(int32_t index) {
  parts_.form.optTXRX[index].value = true;
  parts_.form.optTXRX[1 - index].value = false;
}

}  // namespace velt

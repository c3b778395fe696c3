#include "rig/ptt.h"

#include <algorithm>
#include <utility>

#include "text/formats.h"

namespace velt {

Ptt::Ptt(const Parts& parts)
    : parts_(parts), cat_{CatKeyer(parts.server, 1), CatKeyer(parts.server, 2)} {
  for (CatKeyer& keyer : cat_) parts_.guard.Add(keyer);
  parts_.guard.Add(parts_.lines);
  parts_.guard.Add(parts_.arduino);
  connections_ += parts_.guard.ended.Listen(
      [this](const Keyer& keyer, TransmitGuard::Cause cause) { TransmissionEnded(keyer, cause); });
  connections_ += parts_.server.writeRefused.Listen(
      [this](int32_t number, const RefusedWrite& write) { WriteRefused(number, write); });
}

void Ptt::PTT_ON(TransmitOwner owner) {
  Keyer* keyer = KeyerFor(owner);
  const bool byLink = keyer == nullptr || IsByLink(*keyer);
  if (byLink ? KeyByLink(owner, keyer) : parts_.guard.Key(owner, *keyer)) {
    SelectButton(0);
  } else if (!parts_.guard.Wanted() && (keyer == nullptr || !parts_.guard.Holds(*keyer))) {
    // What is on already, by whatever keyer, stays selected.
    SelectButton(1);
  }
}

void Ptt::PTT_OFF(TransmitOwner owner) {
  if (owner == TransmitOwner::Operator) {
    ReleaseByOperator();
  } else if (!parts_.guard.Release(owner)) {
    return;
  }
  BackToReceive();
}

void Ptt::ReleaseByOperator() {
  Keyer* inUse = KeyerFor(TransmitOwner::Operator);
  if (inUse != nullptr && !IsByLink(*inUse)) {
    parts_.guard.ReleaseAll(inUse);
    if (!inUse->Look().reachable) {
      parts_.messages.Show("The serial port is not there: nothing was sent");
    }
    return;
  }
  // What this program keyed is released even over a lost link: once it is back, before all else.
  // What others keyed is not: by then it may be another transmission.
  const bool sendable = inUse != nullptr && inUse->Look().reachable;
  const bool held = inUse != nullptr && parts_.guard.Holds(*inUse);
  if (!sendable && !held) parts_.control.RefusedWithoutLink();
  parts_.guard.ReleaseAll(sendable ? inUse : nullptr);
}

void Ptt::LeaveRig(bool closing) {
  for (CatKeyer& keyer : cat_) {
    if (closing || &keyer == RigInUse()) LeaveServer(keyer.RigNumber());
  }
}

void Ptt::LeaveServer(int32_t rigNumber) {
  CatKeyer& keyer = cat_.at(rigNumber == 2 ? 1 : 0);
  const bool held = parts_.guard.Holds(keyer);
  if (held) parts_.guard.Leave(keyer);
  if (&keyer != RigInUse()) return;
  // Released or not: what is put back later would go to another rig.
  parts_.control.RestoreNow();
  if (held) BackToReceive();
}

void Ptt::LeaveSerialPort() {
  bool left = false;
  for (Keyer* keyer : std::initializer_list<Keyer*>{&parts_.lines, &parts_.arduino}) {
    if (!parts_.guard.Holds(*keyer)) continue;
    parts_.guard.Leave(*keyer);
    left = true;
  }
  if (left) BackToReceive();
}

// Null without a rig object.
CatKeyer* Ptt::RigInUse() {
  const int32_t number = parts_.rig.Number();
  return number == 1 || number == 2 ? &cat_.at(static_cast<size_t>(number) - 1) : nullptr;
}

// Null where there is none.
Keyer* Ptt::KeyerFor(TransmitOwner owner) {
  const std::string& method = parts_.state.pttMethod;
  if (owner == TransmitOwner::Player || method == "NONE") return RigInUse();
  if (method == "COM") return &parts_.lines;
  return method == "ARDUINO" ? &parts_.arduino : nullptr;
}

bool Ptt::IsByLink(const Keyer& keyer) const {
  return &keyer != &parts_.lines && &keyer != &parts_.arduino;
}

bool Ptt::KeyByLink(TransmitOwner owner, Keyer* keyer) {
  if (parts_.control.RefusedWithoutLink() || keyer == nullptr) return false;
  if (!parts_.guard.Key(owner, *keyer)) return false;
  parts_.form.lblTRXMode.caption = "TX";
  if (!keyedWith_) keyedWith_ = Shift{parts_.state.offsetKHz, parts_.state.vfo};
  parts_.control.SetTRXShift(keyedWith_->kHz, true, keyedWith_->vfo);
  parts_.display.ShowRigParams();
  return true;
}

void Ptt::TransmissionEnded(const Keyer& keyer, TransmitGuard::Cause cause) {
  const bool byLink = IsByLink(keyer);
  if (byLink && &keyer != RigInUse()) return;
  // A rig that never transmitted has nothing to settle before it is moved back.
  if (byLink && cause == TransmitGuard::Cause::Refused) parts_.control.RestoreNow();
  BackToReceive();
}

// Many rigs take no frequency while they transmit. Nobody who keyed wants to be heard elsewhere
// than on the frequency shown, the engine and the player as little as the operator.
void Ptt::WriteRefused(int32_t rigNumber, const RefusedWrite& write) {
  if (rigNumber != parts_.rig.Number() || !parts_.control.TellRefusal(write)) return;
  const CatKeyer* keyer = RigInUse();
  if (keyer == nullptr || !parts_.guard.Wanted(*keyer)) return;
  parts_.guard.ReleaseAll(nullptr);
  BackToReceive();
  const std::string text =
      "Transmission ended: the rig did not go to " + FrequencyText(write.value);
  parts_.messages.Show(text);
  parts_.notices.Raise(NoticeKind::Transmission, text);
}

// Only what nobody wants keyed any more: the player's rig may transmit on when the serial port's
// transmission ends.
void Ptt::BackToReceive() {
  const bool linkInUse =
      std::ranges::any_of(cat_, [this](const auto& keyer) { return parts_.guard.Wanted(keyer); });
  const auto shift = linkInUse ? std::nullopt : std::exchange(keyedWith_, std::nullopt);
  if (!linkInUse && (shift || parts_.state.pttMethod == "NONE")) {
    parts_.form.lblTRXMode.caption = "RX";
    if (shift) parts_.control.SetTRXShift(shift->kHz, false, shift->vfo);
    parts_.display.ShowRigParams();
  }
  if (!parts_.guard.Wanted()) SelectButton(1);
}

void Ptt::SelectButton(int32_t index) {
  parts_.form.optTXRX[index].value = true;
  parts_.form.optTXRX[1 - index].value = false;
}

}  // namespace velt

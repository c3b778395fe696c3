#include "rig/ptt_guard.h"

namespace velt {

PttGuard::PttGuard(IOmniRigX& server, Scheduler& scheduler)
    : server_(server), scheduler_(scheduler) {}

bool PttGuard::Key(int32_t rigNumber) {
  if (!Known(rigNumber)) return false;
  if (Rig(rigNumber).Link().state != RigLink::State::Linked) return false;
  if (!Rig(rigNumber).SetTx(PM_TX)) return false;
  Watch(rigNumber).Keyed(scheduler_.Now());
  KeepChecking();
  return true;
}

void PttGuard::Release(int32_t rigNumber) {
  if (!Known(rigNumber)) return;
  Rig(rigNumber).SetTx(PM_RX);
  Watch(rigNumber).Released(scheduler_.Now());
}

bool PttGuard::Holds(int32_t rigNumber) const {
  return Known(rigNumber) && watches_[static_cast<size_t>(rigNumber) - 1].Holds();
}

void PttGuard::ReleaseNow() {
  for (const int32_t rigNumber : {1, 2}) {
    if (!Holds(rigNumber)) continue;
    server_.ReleaseNow(rigNumber, kReleaseNowLimitMs);
    Watch(rigNumber).Released(scheduler_.Now());
  }
}

void PttGuard::Check() {
  for (const int32_t rigNumber : {1, 2}) CheckRig(rigNumber);
}

void PttGuard::SetLimitMinutes(int32_t minutes) {
  for (PttSafety& watch : watches_) watch.SetLimitMinutes(minutes);
}

IRigX& PttGuard::Rig(int32_t rigNumber) const {
  return rigNumber == 2 ? server_.Rig2() : server_.Rig1();
}

void PttGuard::CheckRig(int32_t rigNumber) {
  IRigX& rig = Rig(rigNumber);
  const PttSafety::Report report{.linked = rig.Link().state == RigLink::State::Linked,
                                 .transmitting = rig.Transmitter() == TxReport::Transmits};
  const PttSafety::Orders orders = Watch(rigNumber).Tick(scheduler_.Now(), report);
  if (orders.release) rig.SetTx(PM_RX);
  if (orders.ended != PttSafety::Cause::None) {
    Tell(orders.ended);
    if (ended) ended(rigNumber);
  }
  if (orders.raiseAlarm && showNotice) showNotice(kMayStillBeOn);
  if (orders.endAlarm && endNotice) endNotice(kMayStillBeOn);
}

void PttGuard::Tell(PttSafety::Cause cause) const {
  if (cause == PttSafety::Cause::Limit) {
    const std::string text =
        "Transmission ended: it reached the limit of " + std::to_string(LimitMinutes()) + " min";
    if (showMessage) showMessage(text);
    if (showNotice) showNotice(text);
  } else if (cause == PttSafety::Cause::LinkLost && showMessage) {
    showMessage("Link lost while transmitting: the release is sent first when it is back");
  }
}

void PttGuard::KeepChecking() {
  tick_ = scheduler_.After(kCheckEvery, [this] {
    Check();
    if (Holds(1) || Holds(2)) KeepChecking();
  });
}

}  // namespace velt

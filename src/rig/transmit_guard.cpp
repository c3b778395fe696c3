#include "rig/transmit_guard.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace velt {

TransmitGuard::TransmitGuard(const Parts& parts) : parts_(parts) {
  connections_ += parts_.guardian.told.Listen([this](const GuardianNews& news) { Hear(news); });
  connections_ += parts_.sleepLock.goingToSleep.Listen([this] { EndAll(Cause::Sleep); });
}

void TransmitGuard::Add(Keyer& keyer) {
  Watch& watch = watches_.emplace_back(keyer);
  watch.safety.SetLimitMinutes(limitMinutes_);
  watch.connections += keyer.refused.Listen([this, &watch] { Refused(watch); });
  watch.connections += keyer.heard.Listen([this, &watch] { CheckWatch(watch); });
}

bool TransmitGuard::Key(TransmitOwner owner, Keyer& keyer) {
  if (ending_) {
    parts_.messages.Show("Not keyed: the program is about to end");
    return false;
  }
  Watch& watch = Of(keyer);
  if (const std::string problem = keyer.Prepare(); !problem.empty()) {
    // The line at the window's foot is too short for the reason, and gone too soon.
    parts_.messages.Show("Not keyed: " + problem);
    parts_.notices.Raise(NoticeKind::Transmission, "Not keyed: " + problem);
    return false;
  }
  const bool guarded = watch.ticket != 0;
  // Anew each time: the guardian counts from there how long a key may be under way.
  if (!HandToGuardian(watch, true)) {
    if (keyer.Recipe()) {
      parts_.messages.Show("Not keyed: nothing would release the transmitter after a crash");
    }
    keyer.GiveUp();
    return false;
  }
  // What transmits for somebody else may refuse a second key, which would end their transmission.
  const bool joins = !watch.wishes.empty() && !watch.wishes.contains(owner) &&
                     keyer.Look().transmitter == TxReport::Transmits;
  if (!joins && !keyer.Key()) {
    if (!guarded) parts_.guardian.Forget(std::exchange(watch.ticket, 0));
    return false;
  }
  if (owner == TransmitOwner::Operator) parts_.notices.Over(NoticeKind::Transmission);
  watch.wishes.insert(owner);
  if (!joins) ++watch.keysSent;
  watch.safety.Keyed(parts_.clock.Elapsed());
  parts_.sleepLock.Hold();
  KeepChecking();
  return true;
}

bool TransmitGuard::Release(TransmitOwner owner) {
  bool released = false;
  for (Watch& watch : watches_) {
    if (watch.wishes.erase(owner) == 0 || !watch.wishes.empty()) continue;
    SendRelease(watch);
    released = true;
  }
  return released;
}

void TransmitGuard::ReleaseAll(Keyer* inUse) {
  for (Watch& watch : watches_) {
    const bool wanted = !watch.wishes.empty();
    watch.wishes.clear();
    if (wanted || watch.safety.Holds() || &watch.keyer == inUse) SendRelease(watch);
  }
  allReleased.Raise();
}

void TransmitGuard::Leave(Keyer& keyer) {
  Watch& watch = Of(keyer);
  const bool wanted = !watch.wishes.empty();
  watch.wishes.clear();
  if (!watch.safety.Holds()) return;
  if (wanted) watch.keyer.ReleaseNow(Milliseconds(0));
  watch.keysSent = 0;
  const bool alarmed = watch.safety.HandOver();
  if (watch.ticket == 0) {
    // Nobody is left who would see to it.
    parts_.notices.Raise(NoticeKind::Transmitter, kMayStillBeOn);
  } else {
    if (alarmed) alarmed_.insert(watch.ticket);
    parts_.guardian.Follow(std::exchange(watch.ticket, 0));
  }
  if (!HoldsAny()) parts_.sleepLock.LetGo();
}

void TransmitGuard::ReleaseNow() {
  ending_ = true;
  for (Watch& watch : watches_) {
    watch.wishes.clear();
    if (!watch.safety.Holds()) continue;
    watch.keyer.ReleaseNow(kReleaseNowLimit);
    watch.safety.Released(parts_.clock.Elapsed());
  }
}

bool TransmitGuard::Holds(const Keyer& keyer) const {
  return std::any_of(watches_.begin(), watches_.end(), [&keyer](const Watch& watch) {
    return &watch.keyer == &keyer && watch.safety.Holds();
  });
}

bool TransmitGuard::Wanted(const Keyer& keyer) const {
  return std::any_of(watches_.begin(), watches_.end(), [&keyer](const Watch& watch) {
    return &watch.keyer == &keyer && !watch.wishes.empty();
  });
}

bool TransmitGuard::Wanted() const {
  return std::any_of(watches_.begin(), watches_.end(),
                     [](const Watch& watch) { return !watch.wishes.empty(); });
}

bool TransmitGuard::WantedBy(TransmitOwner owner) const {
  return std::any_of(watches_.begin(), watches_.end(),
                     [owner](const Watch& watch) { return watch.wishes.contains(owner); });
}

void TransmitGuard::SetLimitMinutes(int32_t minutes) {
  for (Watch& watch : watches_) watch.safety.SetLimitMinutes(minutes);
  limitMinutes_ = std::clamp(minutes, PttSafety::kLeastLimitMinutes, PttSafety::kMostLimitMinutes);
}

TransmitGuard::Watch& TransmitGuard::Of(const Keyer& keyer) {
  const auto found = std::find_if(watches_.begin(), watches_.end(),
                                  [&keyer](const Watch& watch) { return &watch.keyer == &keyer; });
  if (found == watches_.end()) throw std::logic_error("a keyer that nobody added");
  return *found;
}

bool TransmitGuard::HoldsAny() const {
  return std::any_of(watches_.begin(), watches_.end(),
                     [](const Watch& watch) { return watch.safety.Holds(); });
}

// False when nothing would release it. The recipe of an earlier connection is kept until the new
// one is known to be held.
bool TransmitGuard::HandToGuardian(Watch& watch, bool anew) {
  const uint32_t connection = watch.keyer.Connection();
  const bool held = watch.ticket != 0 && watch.connection == connection;
  if (held && !anew) return true;
  const auto recipe = watch.keyer.Recipe();
  const uint32_t ticket = recipe ? parts_.guardian.Hold(*recipe) : 0;
  if (ticket == 0) return held;
  if (watch.ticket != 0) parts_.guardian.Forget(watch.ticket);
  watch.ticket = ticket;
  watch.connection = connection;
  return true;
}

void TransmitGuard::CheckWatch(Watch& watch) {
  // What came back while it is held is held anew.
  if (watch.ticket != 0) HandToGuardian(watch);
  const PttSafety::Orders orders = watch.safety.Tick(parts_.clock.Elapsed(), watch.keyer.Look());
  if (orders.release) watch.keyer.Release();
  if (orders.done) Finished(watch);
  if (orders.raiseAlarm) {
    parts_.notices.Raise(NoticeKind::Transmitter,
                         orders.linkLost ? kLostWhileKeyed : kMayStillBeOn);
  }
  if (orders.endAlarm) parts_.notices.Over(NoticeKind::Transmitter);
  if (orders.ended == PttSafety::Cause::None) return;
  watch.wishes.clear();
  const Cause cause = orders.ended == PttSafety::Cause::Limit      ? Cause::Limit
                      : orders.ended == PttSafety::Cause::LinkLost ? Cause::LinkLost
                                                                   : Cause::Elsewhere;
  Tell(cause, watch.keyer);
  ended.Raise(watch.keyer, cause);
}

void TransmitGuard::SendRelease(Watch& watch) {
  watch.keyer.Release();
  watch.safety.Released(parts_.clock.Elapsed());
}

void TransmitGuard::Refused(Watch& watch) {
  if (watch.wishes.empty()) return;
  watch.wishes.clear();
  SendRelease(watch);
  // Followed up all the same: a transmitter may refuse a second key because it is on. But one that
  // refused the first and tells nothing, as it may have no way to be keyed, would never confirm.
  if (watch.keysSent == 1 && watch.keyer.Look().transmitter == TxReport::Untold) {
    if (watch.safety.HandOver()) parts_.notices.Over(NoticeKind::Transmitter);
    Finished(watch);
  }
  Tell(Cause::Refused, watch.keyer);
  ended.Raise(watch.keyer, Cause::Refused);
}

void TransmitGuard::EndAll(Cause cause) {
  for (Watch& watch : watches_) {
    if (!watch.safety.Holds()) continue;
    const bool wanted = !watch.wishes.empty();
    watch.wishes.clear();
    SendRelease(watch);
    if (!wanted) continue;
    Tell(cause, watch.keyer);
    ended.Raise(watch.keyer, cause);
  }
}

void TransmitGuard::Finished(Watch& watch) {
  watch.keysSent = 0;
  if (watch.ticket != 0) parts_.guardian.Forget(std::exchange(watch.ticket, 0));
  if (!HoldsAny()) parts_.sleepLock.LetGo();
}

void TransmitGuard::Hear(const GuardianNews& news) {
  switch (news.kind) {
    case GuardianNews::Kind::ReleasedInSilence:
      // The tickets are spent.
      for (Watch& watch : watches_) watch.ticket = 0;
      return EndAll(Cause::Silence);
    case GuardianNews::Kind::FollowUpFailed:
      alarmed_.erase(news.ticket);
      return parts_.notices.Raise(NoticeKind::Transmitter, kMayStillBeOn);
    case GuardianNews::Kind::FollowUpDone:
      if (alarmed_.erase(news.ticket) != 0) parts_.notices.Over(NoticeKind::Transmitter);
      return;
    case GuardianNews::Kind::Back:
      return;
  }
}

void TransmitGuard::Tell(Cause cause, const Keyer& keyer) {
  switch (cause) {
    case Cause::Limit: {
      const std::string text =
          "Transmission ended: it reached the limit of " + std::to_string(LimitMinutes()) + " min";
      parts_.messages.Show(text);
      parts_.notices.Raise(NoticeKind::Transmission, text);
      return;
    }
    case Cause::LinkLost:
      return parts_.messages.Show(
          keyer.ComesBack()
              ? "Link lost while transmitting: the release is sent first when it is back"
              : "The serial port was lost while transmitting");
    case Cause::Refused:
      return parts_.messages.Show("The rig refused to transmit");
    case Cause::Silence: {
      const std::string text = "Transmission ended: the program had stood still";
      parts_.messages.Show(text);
      parts_.notices.Raise(NoticeKind::Transmission, text);
      return;
    }
    case Cause::Sleep:
      return parts_.messages.Show("Transmission ended: the computer goes to sleep");
    case Cause::Elsewhere:
      return;
  }
}

void TransmitGuard::KeepChecking() {
  tick_ = parts_.scheduler.After(kCheckEvery, [this] {
    for (Watch& watch : watches_) CheckWatch(watch);
    parts_.guardian.Beat();
    if (HoldsAny()) KeepChecking();
  });
}

}  // namespace velt

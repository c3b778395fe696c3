// The one owner of the transmitters: knows who wants them keyed, keys and releases them through
// their keyers, and sees to it that what was keyed from here is released. It drives one PttSafety
// for each keyer, carries its orders out and keeps the guardian told.
#pragma once

#include <cstdint>
#include <list>
#include <set>
#include <span>
#include <string>

#include "dialogs/message_line.h"
#include "dialogs/notices.h"
#include "event/event.h"
#include "ports/clock.h"
#include "ports/guardian.h"
#include "ports/scheduler.h"
#include "ports/sleep_lock.h"
#include "rig/keyer.h"
#include "rig/ptt_safety.h"

namespace velt {

// Who can want a transmitter keyed.
enum class TransmitOwner { Operator, Engine, Player };

class TransmitGuard {
 public:
  static constexpr Milliseconds kCheckEvery{250};
  static constexpr Milliseconds kReleaseNowLimit{500};
  static constexpr const char* kMayStillBeOn =
      "The transmitter may still be on: switch it off at the radio";
  static constexpr const char* kLostWhileKeyed =
      "Link lost while transmitting. The radio may still transmit: switch it off there";

  enum class Cause {
    Limit,
    LinkLost,
    Elsewhere,  // somebody else released it
    Refused,    // the transmitter did not take the key
    Silence,    // this program stood still, and the guardian released it
    Sleep,      // the machine is going to sleep
  };

  struct Parts {
    MessageLine& messages;
    Notices& notices;
    Scheduler& scheduler;
    const Clock& clock;
    Guardian& guardian;
    SleepLock& sleepLock;
  };

  explicit TransmitGuard(const Parts& parts);

  // A transmission has ended without Release or ReleaseAll. The release, where one is needed, has
  // been sent, and the user is told.
  Event<const Keyer&, Cause> ended;

  // By ReleaseAll: what somebody is about to key is not wanted either.
  Event<> allReleased;

  // To be told of before it is keyed; it must outlive the guard.
  void Add(Keyer& keyer);

  // `owner` wants it keyed from now on. False when that is refused at once, which is told on the
  // message line; nothing is keyed then.
  bool Key(TransmitOwner owner, Keyer& keyer);

  // `owner` does not want anything keyed any more. What somebody else wants stays keyed. True when
  // a release was sent.
  bool Release(TransmitOwner owner);

  // The operator's receive: nobody wants anything keyed any more. What was keyed from here is
  // released and followed up; `inUse` is sent a release whoever keyed it.
  void ReleaseAll(Keyer* inUse);

  // The connection to it ends. What was keyed over it is released and followed up by the guardian;
  // nothing is sent to it any more.
  void Leave(Keyer& keyer);

  // Releases what was keyed from here by the shortest way. For the end of the program: nothing is
  // keyed any more.
  void ReleaseNow();

  // Keyed from here and not yet known to be released.
  bool Holds(const Keyer& keyer) const;

  // Somebody wants a transmitter keyed; or this one; or `owner` does.
  bool Wanted() const;
  bool Wanted(const Keyer& keyer) const;
  bool WantedBy(TransmitOwner owner) const;

  void SetLimitMinutes(int32_t minutes);  // 1 to 60, others are moved inside
  int32_t LimitMinutes() const { return limitMinutes_; }

 private:
  struct Watch {
    Keyer& keyer;
    PttSafety safety = {};
    std::set<TransmitOwner> wishes = {};
    uint32_t ticket = 0;      // the guardian's; 0 while it is not held
    uint32_t connection = 0;  // the ticket is good for
    int keysSent = 0;         // since it is held
    Connections connections = {};
  };

  Watch& Of(const Keyer& keyer);
  bool HoldsAny() const;
  bool HandToGuardian(Watch& watch, bool anew = false);
  void CheckWatch(Watch& watch);
  void SendRelease(Watch& watch);
  void Refused(Watch& watch);
  void EndAll(Cause cause);
  void Finished(Watch& watch);
  void Hear(const GuardianNews& news);
  void Tell(Cause cause, const Keyer& keyer);
  void KeepChecking();

  Parts parts_;
  std::list<Watch> watches_;
  std::set<uint32_t> alarmed_;  // tickets handed over while nobody knew what the transmitter does
  bool ending_ = false;
  int32_t limitMinutes_ = PttSafety::kInitialLimitMinutes;
  Scheduler::Handle tick_;
  Connections connections_;
};

}  // namespace velt

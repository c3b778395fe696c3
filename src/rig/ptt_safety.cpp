#include "rig/ptt_safety.h"

#include <algorithm>
#include <utility>

namespace velt {

void PttSafety::SetLimitMinutes(int32_t minutes) {
  limitMinutes_ = std::clamp(minutes, kLeastLimitMinutes, kMostLimitMinutes);
}

void PttSafety::Keyed(SteadyTime now) {
  if (stage_ == Stage::Keyed) return;
  stage_ = Stage::Keyed;
  keyedSince_ = now;
  wasLinked_ = true;
  sawTransmit_ = false;
  receivesSince_.reset();
}

void PttSafety::Released(SteadyTime now) {
  if (stage_ == Stage::Idle) return;
  stage_ = Stage::Releasing;
  releasingSince_ = now;
  lastSent_ = now;
  receivesSince_.reset();
}

bool PttSafety::HandOver() {
  stage_ = Stage::Idle;
  keyUnanswered_ = false;
  return std::exchange(alarm_, false);
}

PttSafety::Orders PttSafety::Tick(SteadyTime now, const Keyer::Report& report) {
  Orders orders;
  if (stage_ == Stage::Idle) return orders;
  const bool linkIsBack = report.linked && !wasLinked_;
  wasLinked_ = report.linked;
  if (!report.linked && !sawTransmit_) keyUnanswered_ = true;
  if (report.linked && report.transmitter == TxReport::Transmits) {
    sawTransmit_ = true;
    keyUnanswered_ = false;
  }
  const bool released = stage_ == Stage::Releasing && report.releaseAccepted;
  const bool receives = report.transmitter == TxReport::Receives ||
                        (report.transmitter == TxReport::Untold && released);
  if (!report.linked || !receives) {
    receivesSince_.reset();
  } else if (!receivesSince_) {
    receivesSince_ = now;
  }
  if (stage_ == Stage::Keyed) {
    TickKeyed(now, report, orders);
  } else {
    TickReleasing(now, report, linkIsBack, orders);
  }
  return orders;
}

void PttSafety::TickKeyed(SteadyTime now, const Keyer::Report& report, Orders& orders) {
  if (!report.linked) return End(now, Cause::LinkLost, orders);
  if (now - keyedSince_ >= std::chrono::minutes(limitMinutes_)) {
    return End(now, Cause::Limit, orders);
  }
  // Somebody else ended it; what is keyed from now on is theirs. One that never reported
  // transmitting does not tell, and stays remembered.
  if (sawTransmit_ && ReceivesFor(kReceiveWhileKeyed, now)) {
    Finish(orders);
    orders.ended = Cause::Elsewhere;
  }
}

void PttSafety::TickReleasing(SteadyTime now, const Keyer::Report& report, bool linkIsBack,
                              Orders& orders) {
  const bool late = now - releasingSince_ >= kRepeatFor;
  const bool tells = report.transmitter != TxReport::Untold;
  if (!report.linked) AlarmLinkLost(orders);
  if (linkIsBack) {
    Released(now);
    orders.release = true;
  } else if (ReceivesFor(kReceiveAfterRelease, now) && !(tells && KeyMayCome(now))) {
    Finish(orders);
  } else if (late) {
    if (!std::exchange(alarm_, true)) orders.raiseAlarm = true;
  } else if (report.reachable && !receivesSince_ && now - lastSent_ >= kRepeatEvery) {
    lastSent_ = now;
    orders.release = true;
  }
}

void PttSafety::End(SteadyTime now, Cause cause, Orders& orders) {
  Released(now);
  orders.release = true;
  orders.ended = cause;
  if (cause == Cause::LinkLost) AlarmLinkLost(orders);
}

void PttSafety::AlarmLinkLost(Orders& orders) {
  orders.raiseAlarm = orders.linkLost = !std::exchange(alarm_, true);
}

void PttSafety::Finish(Orders& orders) {
  stage_ = Stage::Idle;
  keyUnanswered_ = false;
  orders.done = true;
  orders.endAlarm = std::exchange(alarm_, false);
}

bool PttSafety::ReceivesFor(Milliseconds span, SteadyTime now) const {
  return receivesSince_ && now - *receivesSince_ >= span;
}

bool PttSafety::KeyMayCome(SteadyTime now) const {
  return keyUnanswered_ && now - keyedSince_ < kKeyComesWithin;
}

}  // namespace velt

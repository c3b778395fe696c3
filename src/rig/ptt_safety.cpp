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

PttSafety::Orders PttSafety::Tick(SteadyTime now, Report report) {
  Orders orders;
  if (stage_ == Stage::Idle) return orders;
  const bool linkIsBack = report.linked && !wasLinked_;
  wasLinked_ = report.linked;
  if (!report.linked || report.transmitting) {
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

void PttSafety::TickKeyed(SteadyTime now, Report report, Orders& orders) {
  if (report.linked && report.transmitting) sawTransmit_ = true;
  if (!report.linked) return End(now, Cause::LinkLost, orders);
  if (now - keyedSince_ >= std::chrono::minutes(limitMinutes_)) {
    return End(now, Cause::Limit, orders);
  }
  // Somebody else ended it; what is keyed from now on is theirs. A rig that never reported
  // transmitting does not tell, and stays remembered.
  if (sawTransmit_ && ReceivesFor(kReceiveWhileKeyed, now)) {
    stage_ = Stage::Idle;
    orders.ended = Cause::Elsewhere;
    orders.endAlarm = std::exchange(alarm_, false);
  }
}

void PttSafety::TickReleasing(SteadyTime now, Report report, bool linkIsBack, Orders& orders) {
  if (linkIsBack) {
    Released(now);
    orders.release = true;
  } else if (ReceivesFor(kReceiveAfterRelease, now)) {
    stage_ = Stage::Idle;
    orders.endAlarm = std::exchange(alarm_, false);
  } else if (now - releasingSince_ >= kRepeatFor) {
    orders.raiseAlarm = !std::exchange(alarm_, true);
  } else if (report.linked && report.transmitting && now - lastSent_ >= kRepeatEvery) {
    lastSent_ = now;
    orders.release = true;
  }
}

void PttSafety::End(SteadyTime now, Cause cause, Orders& orders) {
  Released(now);
  orders.release = true;
  orders.ended = cause;
}

bool PttSafety::ReceivesFor(Milliseconds span, SteadyTime now) const {
  return receivesSince_ && now - *receivesSince_ >= span;
}

}  // namespace velt

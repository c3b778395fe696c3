#include "guardian/follow_up.h"

#include <algorithm>

namespace velt {

FollowUp::FollowUp(SteadyTime now, Peer peer, Limits limits)
    : peer_(peer),
      limits_(limits),
      keyMayComeUntil_(peer.keyMayComeUntil),
      end_(std::max(now + limits.all, keyMayComeUntil_ + limits.answer)),
      due_(now) {}

SteadyTime FollowUp::Due() const {
  return std::min(due_, end_);
}

FollowUp::Order FollowUp::Tick(SteadyTime now) {
  if (stage_ == Stage::Ended) return Order::Nothing;
  if (now >= end_) return End(receivesSince_ ? Order::Done : Order::Failed);
  if (now < due_) return Order::Nothing;
  switch (stage_) {
    case Stage::Unconnected:
      stage_ = Stage::Connecting;
      due_ = now + limits_.answer;
      return Order::Connect;
    case Stage::Pausing:
      return next_ == Order::Ask ? Ask(now) : Release(now);
    case Stage::Connecting:
    case Stage::Releasing:
    case Stage::Asking:
      Lost(now);
      return Order::Drop;
    case Stage::Ended:
      break;
  }
  return Order::Nothing;
}

FollowUp::Order FollowUp::Connected(SteadyTime now) {
  if (stage_ != Stage::Connecting) return Order::Nothing;
  return peer_.tells && acceptances_ > 0 ? Ask(now) : Release(now);
}

FollowUp::Order FollowUp::Answered(SteadyTime now, Answer answer) {
  if (stage_ == Stage::Releasing) {
    if (answer.accepted) ++acceptances_;
    return peer_.tells ? Ask(now) : CannotTell(now);
  }
  if (stage_ != Stage::Asking) return Order::Nothing;
  if (answer.told == Told::Nothing) {
    return everTold_ ? Pause(now + kRetryEvery, Order::Ask) : CannotTell(now);
  }
  everTold_ = true;
  if (answer.told == Told::Transmits) {
    if (receivesSince_ && now < keyMayComeUntil_) {
      keyMayComeUntil_ = now;
      end_ = now + limits_.all;
    }
    receivesSince_.reset();
    return Pause(lastRelease_ + kRetryEvery, Order::Release);
  }
  if (!receivesSince_) receivesSince_ = now;
  const SteadyTime sure = std::max(*receivesSince_ + kConfirmAfter, keyMayComeUntil_);
  if (now >= sure) return End(Order::Done);
  return Pause(std::min(sure, now + kConfirmAfter), Order::Ask);
}

FollowUp::Order FollowUp::Left(SteadyTime now) {
  return peer_.answers ? Order::Nothing : Answered(now, {.accepted = true});
}

void FollowUp::Lost(SteadyTime now) {
  if (stage_ == Stage::Ended || stage_ == Stage::Unconnected) return;
  stage_ = Stage::Unconnected;
  due_ = now + kRetryEvery;
}

FollowUp::Order FollowUp::Release(SteadyTime now) {
  stage_ = Stage::Releasing;
  lastRelease_ = now;
  due_ = now + limits_.answer;
  return Order::Release;
}

FollowUp::Order FollowUp::Ask(SteadyTime now) {
  stage_ = Stage::Asking;
  due_ = now + limits_.answer;
  return Order::Ask;
}

FollowUp::Order FollowUp::Pause(SteadyTime until, Order then) {
  stage_ = Stage::Pausing;
  due_ = until;
  next_ = then;
  return Order::Nothing;
}

FollowUp::Order FollowUp::CannotTell(SteadyTime now) {
  if (acceptances_ == 0) return Pause(now + kRetryEvery, Order::Release);
  if (lastRelease_ >= keyMayComeUntil_) return End(Order::Done);
  return Pause(std::max(now, std::min(lastRelease_ + kConfirmAfter, keyMayComeUntil_)),
               Order::Release);
}

FollowUp::Order FollowUp::End(Order order) {
  stage_ = Stage::Ended;
  due_ = end_;
  return order;
}

}  // namespace velt

#include "guardian/holdings.h"

#include <algorithm>

namespace velt {

Holdings::Orders Holdings::Heard(SteadyTime now) {
  Orders orders;
  lastHeard_ = now;
  // It was told of its silence, and sees to its transmitters itself from now on.
  for (auto& [ticket, held] : held_) {
    if (held.stage == Stage::FollowedInSilence) held.stage = Stage::FollowedOn;
    if (held.stage == Stage::FailedInSilence) orders.drop.push_back(ticket);
  }
  for (const uint32_t ticket : orders.drop) held_.erase(ticket);
  return orders;
}

Holdings::Orders Holdings::Hold(SteadyTime now, uint32_t ticket, const std::string& transmitter) {
  Orders orders;
  const std::map<uint32_t, Held> before = held_;
  for (const auto& [known, held] : before) {
    const bool over = held.stage != Stage::Held && held.transmitter == transmitter;
    if (over && held.stage == Stage::FollowedForProgram) orders.done.push_back(known);
    if (over || known == ticket) Drop(orders, known);
  }
  held_[ticket] = {transmitter, now};
  lastTicket_ = std::max(lastTicket_, ticket);
  return orders;
}

Holdings::Orders Holdings::Forget(uint32_t ticket) {
  Orders orders;
  if (held_.contains(ticket)) Drop(orders, ticket);
  return orders;
}

Holdings::Orders Holdings::Follow(uint32_t ticket) {
  Orders orders;
  const auto found = held_.find(ticket);
  if (found == held_.end()) {
    // Released in silence meanwhile, and seen to receive.
    orders.done.push_back(ticket);
  } else {
    Stage& stage = found->second.stage;
    if (stage == Stage::Held || stage == Stage::FailedInSilence) orders.release.push_back(ticket);
    stage = Stage::FollowedForProgram;
  }
  return orders;
}

Holdings::Orders Holdings::Ended() {
  Orders orders;
  ended_ = true;
  for (auto& [ticket, held] : held_) {
    if (held.stage == Stage::Held || held.stage == Stage::FailedInSilence) {
      held.stage = Stage::FollowedOn;
      orders.release.push_back(ticket);
    }
  }
  return orders;
}

Holdings::Orders Holdings::Tick(SteadyTime now) {
  Orders orders;
  const auto due = Due();
  if (!due || now < *due) return orders;
  for (auto& [ticket, held] : held_) {
    if (held.stage != Stage::Held) continue;
    held.stage = Stage::FollowedInSilence;
    orders.release.push_back(ticket);
  }
  orders.tellSilence = true;
  return orders;
}

Holdings::Orders Holdings::FollowedUp(uint32_t ticket, bool released) {
  Orders orders;
  const auto found = held_.find(ticket);
  if (found == held_.end()) return orders;
  Stage& stage = found->second.stage;
  if (stage == Stage::FollowedForProgram) {
    (released ? orders.done : orders.failed).push_back(ticket);
  } else if (stage == Stage::FollowedInSilence && !released && !ended_) {
    stage = Stage::FailedInSilence;
    return orders;
  }
  Drop(orders, ticket);
  return orders;
}

std::optional<SteadyTime> Holdings::Due() const {
  const bool holds = std::ranges::any_of(
      held_, [](const auto& entry) { return entry.second.stage == Stage::Held; });
  if (!holds || ended_) return std::nullopt;
  return lastHeard_ + silence_;
}

void Holdings::Drop(Orders& orders, uint32_t ticket) {
  held_.erase(ticket);
  orders.drop.push_back(ticket);
}

}  // namespace velt

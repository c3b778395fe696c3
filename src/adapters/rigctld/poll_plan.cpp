#include "adapters/rigctld/poll_plan.h"

#include <algorithm>

#include "adapters/rigctld/rig_picture.h"

namespace velt {

namespace {

constexpr Milliseconds kRound{125};
constexpr Milliseconds kSilentRound{1000};
constexpr Milliseconds kSeldom{2000};
// On a slow rig the rounds would follow each other without a gap for anyone else.
constexpr Milliseconds kLeastGap{25};
// A single error says nothing.
constexpr int32_t kMostErrors = 3;
// Each cost a connection.
constexpr int32_t kMostUnanswered = 3;

// Servers do not answer a long name that they do not know. A letter is known to all of them, so
// that it was the rig that took too long.
bool HasLongName(CommandKind kind) {
  return kind == CommandKind::GetVfoA || kind == CommandKind::GetVfoB ||
         kind == CommandKind::GetType || kind == CommandKind::GetPower;
}

template <class Map>
int32_t CountOf(const Map& map, CommandKind kind) {
  const auto found = map.find(kind);
  return found == map.end() ? 0 : found->second;
}

}  // namespace

void PollPlan::Restart() {
  round_.clear();
  restarted_ = true;
  silent_ = typeKnown_ = false;
  errors_.clear();
}

void PollPlan::ForgetServer() {
  *this = PollPlan();
}

std::optional<CommandKind> PollPlan::Next(SteadyTime now) {
  if (round_.empty()) {
    if (!restarted_ && now < nextRound_) return std::nullopt;
    BuildRound(now);
  }
  const CommandKind kind = round_.front();
  round_.pop_front();
  // Should writes keep the line busy until then, the next round is due all the same.
  nextRound_ = roundStart_ + (silent_ ? kSilentRound : kRound);
  return kind;
}

Milliseconds PollPlan::Pause(SteadyTime now) const {
  const auto pause = std::chrono::ceil<Milliseconds>(nextRound_ - now);
  return std::max(pause, Milliseconds(1));
}

void PollPlan::Answered(CommandKind kind, int32_t code, SteadyTime now) {
  answered_.insert(kind);
  if (code != 0) {
    ++errors_[kind];
  } else {
    errors_.erase(kind);
    if (kind == CommandKind::GetType) typeKnown_ = true;
  }
  if (round_.empty()) nextRound_ = std::max(nextRound_, now + kLeastGap);
}

void PollPlan::Unanswered(CommandKind kind) {
  if (kind != CommandKind::GetFreq && !answered_.contains(kind)) ++unanswered_[kind];
}

bool PollPlan::Answers(CommandKind kind) const {
  return !GivenUp(kind) && !Fails(kind);
}

void PollPlan::SetSilent(bool on) {
  // What failed while the rig was away says nothing of it now.
  if (silent_ && !on) errors_.clear();
  // The server would answer the rest of the round from its memory.
  if (!silent_ && on) round_.clear();
  silent_ = on;
}

void PollPlan::HurryTransmit() {
  const bool next = !round_.empty() && round_.front() == CommandKind::GetTransmit;
  if (!next && !GivenUp(CommandKind::GetTransmit)) round_.push_front(CommandKind::GetTransmit);
}

void PollPlan::HurryVfos(SteadyTime now) {
  vfosDue_ = now + kSettling;
}

void PollPlan::BuildRound(SteadyTime now) {
  roundStart_ = now;
  seldom_ = restarted_ || now >= nextSeldom_;
  if (seldom_) nextSeldom_ = now + kSeldom;
  if (silent_) {
    Add(CommandKind::GetFreq);
    Add(CommandKind::GetPower);
    return;
  }
  // Asking for a VFO makes some rigs switch to it for a moment: not under power.
  const bool vfos = !transmitting_ && (seldom_ || (vfosDue_ && now >= *vfosDue_));
  if (vfos && !restarted_) Add(CommandKind::GetVfo);
  Add(CommandKind::GetFreq);
  if (vfos && restarted_) Add(CommandKind::GetVfo);
  Add(CommandKind::GetMode);
  Add(CommandKind::GetTransmit);
  Add(CommandKind::GetSplit);
  if (split_ && (seldom_ || transmitting_)) Add(CommandKind::GetSplitFreq);
  if (vfos) {
    Add(CommandKind::GetVfoA);
    Add(CommandKind::GetVfoB);
    if (vfosDue_ && now >= *vfosDue_) vfosDue_.reset();
  }
  if (seldom_ && !typeKnown_) Add(CommandKind::GetType);
  restarted_ = false;
}

void PollPlan::Add(CommandKind kind) {
  const bool asked = kind == CommandKind::GetFreq || seldom_ || !Fails(kind);
  if (asked && !GivenUp(kind)) round_.push_back(kind);
}

bool PollPlan::GivenUp(CommandKind kind) const {
  return CountOf(unanswered_, kind) >= (HasLongName(kind) ? 1 : kMostUnanswered);
}

bool PollPlan::Fails(CommandKind kind) const {
  return CountOf(errors_, kind) >= kMostErrors;
}

}  // namespace velt

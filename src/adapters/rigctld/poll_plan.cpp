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

// The server's codes for a command that this rig does not have.
bool IsRefusal(int32_t code) {
  return code == -1 || code == -4 || code == -11;
}

}  // namespace

void PollPlan::Restart() {
  round_.clear();
  restarted_ = true;
  silent_ = false;
  refused_.clear();
}

void PollPlan::ForgetServer() {
  Restart();
  answered_.clear();
  unanswered_.clear();
  split_ = transmitting_ = false;
  hurriedRounds_ = 0;
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
  if (kind != CommandKind::GetFreq && IsRefusal(code)) refused_.insert(kind);
  if (round_.empty()) nextRound_ = std::max(nextRound_, now + kLeastGap);
}

void PollPlan::Unanswered(CommandKind kind) {
  if (kind != CommandKind::GetFreq && !answered_.contains(kind)) unanswered_.insert(kind);
}

bool PollPlan::Knows(CommandKind kind) const {
  return !refused_.contains(kind) && !unanswered_.contains(kind);
}

void PollPlan::HurryTransmit() {
  if (Knows(CommandKind::GetTransmit)) round_.push_front(CommandKind::GetTransmit);
}

void PollPlan::HurryVfos() {
  hurriedRounds_ = kSettlingReports + 1;
}

void PollPlan::BuildRound(SteadyTime now) {
  roundStart_ = now;
  if (silent_) {
    Add(CommandKind::GetFreq);
    Add(CommandKind::GetPower);
    return;
  }
  const bool seldom = restarted_ || now >= nextSeldom_;
  if (seldom) nextSeldom_ = now + kSeldom;
  // Asking for a VFO makes some rigs switch to it for a moment: not under power.
  const bool vfos = !transmitting_ && (seldom || hurriedRounds_ > 0);
  if (vfos && !restarted_) Add(CommandKind::GetVfo);
  Add(CommandKind::GetFreq);
  if (vfos && restarted_) Add(CommandKind::GetVfo);
  Add(CommandKind::GetMode);
  Add(CommandKind::GetTransmit);
  Add(CommandKind::GetSplit);
  if (split_ && (seldom || transmitting_)) Add(CommandKind::GetSplitFreq);
  if (vfos) {
    Add(CommandKind::GetVfoA);
    Add(CommandKind::GetVfoB);
    hurriedRounds_ = std::max(hurriedRounds_ - 1, 0);
  }
  if (restarted_) Add(CommandKind::GetType);
  restarted_ = false;
}

void PollPlan::Add(CommandKind kind) {
  if (Knows(kind)) round_.push_back(kind);
}

}  // namespace velt

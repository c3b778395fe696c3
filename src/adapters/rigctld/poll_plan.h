// What to ask the rig and when: frequency, mode, transmit state and split several times a second,
// the VFOs seldom. A round begins only after the last reply of the one before.
#pragma once

#include <deque>
#include <optional>
#include <set>

#include "adapters/rigctld/rig_command.h"

namespace velt {

class PollPlan {
 public:
  // A new connection: everything is asked at once.
  void Restart();
  // Another server: what the last one did not know is tried again.
  void ForgetServer();

  // The next read that is due; not while one is under way.
  std::optional<CommandKind> Next(SteadyTime now);
  // Until the next round, at least 1 ms.
  Milliseconds Pause(SteadyTime now) const;

  // The reply to a read came with this code.
  void Answered(CommandKind kind, int32_t code, SteadyTime now);
  // No reply came within the limit.
  void Unanswered(CommandKind kind);
  // False when this server does not know the command.
  bool Knows(CommandKind kind) const;

  void SetSplit(bool on) { split_ = on; }
  void SetTransmitting(bool on) { transmitting_ = on; }
  // The rig behind the server does not answer: asked gently.
  void SetSilent(bool on) { silent_ = on; }
  // The transmitter was keyed or released: its state is asked before anything else.
  void HurryTransmit();
  // VFO A or B was written: both are asked in each of the next rounds.
  void HurryVfos();

 private:
  void BuildRound(SteadyTime now);
  void Add(CommandKind kind);

  std::deque<CommandKind> round_;
  SteadyTime roundStart_;
  SteadyTime nextRound_;
  SteadyTime nextSeldom_;
  bool restarted_ = true;
  int32_t hurriedRounds_ = 0;
  bool split_ = false;
  bool transmitting_ = false;
  bool silent_ = false;
  std::set<CommandKind> answered_;    // ever, by this server
  std::set<CommandKind> refused_;     // on this connection
  std::set<CommandKind> unanswered_;  // never answered, and it cost a connection
};

}  // namespace velt

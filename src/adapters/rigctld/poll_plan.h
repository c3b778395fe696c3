// What to ask the rig and when: frequency, mode, transmit state and split several times a second,
// the VFOs seldom, and seldom what was answered with errors only. A round begins only after the
// last reply of the one before.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <set>

#include "adapters/rigctld/rig_command.h"

namespace velt {

class PollPlan {
 public:
  // A new connection: everything is asked at once.
  void Restart();
  // Another server: what the last one left unanswered is tried again.
  void ForgetServer();

  // The next read that is due; not while one is under way.
  std::optional<CommandKind> Next(SteadyTime now);
  // Until the next round, at least 1 ms.
  Milliseconds Pause(SteadyTime now) const;

  // The reply to a read came with this code.
  void Answered(CommandKind kind, int32_t code, SteadyTime now);
  // No reply came within the limit.
  void Unanswered(CommandKind kind);
  // False when the last answers to it were errors, or it is not asked any more.
  bool Answers(CommandKind kind) const;

  void SetSplit(bool on) { split_ = on; }
  void SetTransmitting(bool on) { transmitting_ = on; }
  // The rig behind the server does not answer: asked gently.
  void SetSilent(bool on);
  // The transmitter was keyed or released: its state is asked before anything else.
  void HurryTransmit();
  // VFO A or B was written: both are asked as soon as a report is believed again.
  void HurryVfos(SteadyTime now);

 private:
  void BuildRound(SteadyTime now);
  void Add(CommandKind kind);
  bool GivenUp(CommandKind kind) const;
  bool Fails(CommandKind kind) const;

  std::deque<CommandKind> round_;
  SteadyTime roundStart_;
  SteadyTime nextRound_;
  SteadyTime nextSeldom_;
  std::optional<SteadyTime> vfosDue_;
  bool restarted_ = true;
  bool seldom_ = true;  // the present round asks for everything
  bool typeKnown_ = false;
  bool split_ = false;
  bool transmitting_ = false;
  bool silent_ = false;
  std::map<CommandKind, int32_t> errors_;      // in a row, on this connection
  std::map<CommandKind, int32_t> unanswered_;  // of what this server never answered
  std::set<CommandKind> answered_;             // ever, by this server
};

}  // namespace velt

// Releases a transmitter behind a server, over a connection of its own.
#pragma once

#include <string>

#include "guardian/answer_reader.h"
#include "guardian/descriptor.h"
#include "guardian/follow_up.h"
#include "guardian/release_task.h"
#include "ports/guardian.h"

namespace velt {

class ServerRelease : public ReleaseTask {
 public:
  // The recipe must stay alive.
  ServerRelease(const ReleaseRecipe& recipe, SteadyTime keyMayComeUntil, FollowUp::Limits limits,
                SteadyTime now);

  pollfd Waits() const override;
  SteadyTime Due() const override;
  State Turn(SteadyTime now, short happened) override;

 private:
  static constexpr Milliseconds kLookAgain{20};

  void Carry(FollowUp::Order order, SteadyTime now);
  void Connect(SteadyTime now);
  void FinishConnecting(SteadyTime now);
  void Send(const std::string& command, SteadyTime now);
  void WriteOn(SteadyTime now);
  void Read(SteadyTime now);
  void SeeWhetherItLeft(SteadyTime now);
  void Lose(SteadyTime now);

  const ReleaseRecipe& recipe_;
  FollowUp followUp_;
  AnswerReader reader_;
  Descriptor connection_;
  bool connecting_ = false;
  std::string unsent_;
  bool leaving_ = false;  // a release to a peer that does not answer is on its way
  SteadyTime lookAgain_;
  State state_ = State::UnderWay;
};

}  // namespace velt

// The guardian's loop: hears the program, and releases what it held when it has to.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "guardian/failure_report.h"
#include "guardian/follow_up.h"
#include "guardian/guardian_socket.h"
#include "guardian/holdings.h"
#include "guardian/release_task.h"

namespace velt {

struct GuardianLimits {
  Milliseconds silence{5000};
  FollowUp::Limits followUp;
};

class GuardianLoop {
 public:
  GuardianLoop(GuardianSocket socket, const GuardianLimits& limits);

  // Returns when the program is gone and nothing is left to be followed up.
  void Run();

 private:
  struct Entry {
    ReleaseRecipe recipe;
    Descriptor device;
    std::string name;  // "127.0.0.1:4532", "/dev/ttyUSB0"
    std::unique_ptr<ReleaseTask> task;
  };
  using Turns = std::map<uint32_t, short>;  // by ticket: what happened

  Turns Wait() const;
  int WaitAtMost(SteadyTime now) const;  // milliseconds; -1: for ever
  void Hear();
  void Obey(GuardianSocket::Received& received, SteadyTime now);
  void Carry(const Holdings::Orders& orders, SteadyTime now);
  void Begin(uint32_t ticket, SteadyTime now);
  void TakeTurns(const Turns& turns);
  void TaskEnded(uint32_t ticket, bool released, SteadyTime now);
  void Tell(GuardianMessage::Kind kind, uint32_t ticket) const;
  bool IsBusy() const;

  GuardianSocket socket_;
  const GuardianLimits limits_;
  Holdings holdings_;
  std::map<uint32_t, Entry> entries_;
  FailureReport report_;
};

}  // namespace velt

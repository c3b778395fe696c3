// What the guardian holds for the program, and when it has to be released: when the program hands
// it over, when it is silent while something is held, and when it is gone. Pure: it is told the
// time and what happened, and answers with orders.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ports/scheduler.h"

namespace velt {

class Holdings {
 public:
  struct Orders {
    std::vector<uint32_t> release;  // begin to follow it up
    std::vector<uint32_t> drop;     // its follow-up and what is kept of it
    std::vector<uint32_t> done;     // to be told as done
    std::vector<uint32_t> failed;   // to be told as failed
    bool tellSilence = false;       // up to the last ticket that was held
  };

  explicit Holdings(Milliseconds silence) : silence_(silence) {}

  // Anything was heard from the program. To be called after what was heard.
  Orders Heard(SteadyTime now);

  // A follow-up of the same transmitter that still goes on would end a transmission that is
  // beginning: it is over with this.
  Orders Hold(SteadyTime now, uint32_t ticket, const std::string& transmitter);
  Orders Forget(uint32_t ticket);
  Orders Follow(uint32_t ticket);
  Orders Ended();  // the program is gone
  Orders Tick(SteadyTime now);

  // A follow-up that was ordered is over.
  Orders FollowedUp(uint32_t ticket, bool released);

  // When Tick has something to do, if nothing else happens before.
  std::optional<SteadyTime> Due() const;

  SteadyTime HeldSince(uint32_t ticket) const { return held_.at(ticket).since; }

  uint32_t LastTicket() const { return lastTicket_; }
  bool Finished() const { return ended_ && held_.empty(); }

 private:
  enum class Stage {
    Held,
    FollowedForProgram,  // which waits for news of it
    FollowedInSilence,
    FollowedOn,       // nobody waits for news of it
    FailedInSilence,  // tried again at the end of a program that never came back
  };
  struct Held {
    std::string transmitter;
    SteadyTime since;
    Stage stage = Stage::Held;
  };

  void Drop(Orders& orders, uint32_t ticket);

  const Milliseconds silence_;
  std::map<uint32_t, Held> held_;
  SteadyTime lastHeard_;
  uint32_t lastTicket_ = 0;
  bool ended_ = false;
};

}  // namespace velt

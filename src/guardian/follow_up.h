// Decides how one transmitter behind a server is released until it is seen to receive. Pure: it is
// told the time and what happened, and answers with the one thing to do now.
//
// - The release goes out as soon as there is a connection. It is repeated after an answer that says
//   that it still transmits or that refused the release, and when the connection or the answer
//   failed; never otherwise.
// - "It receives" has to be said again after a while: a server may answer from its memory, and the
//   key command of a program that is gone may still be on its way in the server. For as long as
//   that is to be expected it is asked again and again, and a rig that does not tell is released
//   so. When the key has come, the time for all begins anew.
// - A rig that does not tell is left at the first release that was accepted after that.
// - After the time for all it failed.
#pragma once

#include <cstdint>
#include <optional>

#include "ports/scheduler.h"

namespace velt {

class FollowUp {
 public:
  // Also the least time between two releases.
  static constexpr Milliseconds kRetryEvery{250};
  // rigctld (Hamlib 4.5.4) answers from its memory for 500 ms after it passed a command on.
  static constexpr Milliseconds kConfirmAfter{600};

  struct Limits {
    Milliseconds all{10'000};
    Milliseconds answer{3000};  // for a connection, and for each answer
    Milliseconds key{10'000};   // until one takes effect, after it was handed over
  };

  struct Peer {
    bool answers = true;
    bool tells = true;             // it can be asked
    SteadyTime keyMayComeUntil{};  // it was handed over not long before
  };

  enum class Told { Nothing, Receives, Transmits };
  struct Answer {
    bool accepted = false;
    Told told = Told::Nothing;
  };

  enum class Order {
    Nothing,
    Connect,  // then say Connected or Lost
    Drop,     // the connection, or the attempt to have one
    Release,  // send it, then say Answered, or Left where there are no answers
    Ask,      // send it, then say Answered
    Done,
    Failed,
  };

  FollowUp(SteadyTime now, Peer peer, Limits limits);

  Order Tick(SteadyTime now);
  Order Connected(SteadyTime now);
  Order Answered(SteadyTime now, Answer answer);
  Order Left(SteadyTime now);  // the release has arrived at a peer that does not answer
  // The connection ended, or could not be had: another one is ordered after a while.
  void Lost(SteadyTime now);

  // When Tick has something to do, if nothing else happens before.
  SteadyTime Due() const;

 private:
  enum class Stage { Unconnected, Connecting, Releasing, Asking, Pausing, Ended };

  Order Release(SteadyTime now);
  Order Ask(SteadyTime now);
  Order Pause(SteadyTime until, Order then);
  Order CannotTell(SteadyTime now);
  Order End(Order order);

  const Peer peer_;
  const Limits limits_;
  SteadyTime keyMayComeUntil_;
  SteadyTime end_;
  Stage stage_ = Stage::Unconnected;
  SteadyTime due_;
  Order next_ = Order::Nothing;  // after the pause
  int acceptances_ = 0;
  bool everTold_ = false;
  SteadyTime lastRelease_;
  std::optional<SteadyTime> receivesSince_;
};

}  // namespace velt

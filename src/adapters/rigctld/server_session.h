// The conversation with one server: connects and keeps connecting, has one command under way at a
// time, and gives up a connection whose reply does not come or makes no sense.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>

#include "adapters/rigctld/byte_channel.h"
#include "adapters/rigctld/reply_reader.h"
#include "adapters/rigctld/rig_command.h"

namespace velt {

class ServerSession {
 public:
  // Who has the commands. Called on the window's thread, never from within a call but for
  // NextCommand() and Pause().
  class Client {
   public:
    virtual ~Client() = default;
    virtual std::optional<RigCommand> NextCommand() = 0;
    // After NextCommand() gave nothing: when to ask again.
    virtual Milliseconds Pause() = 0;
    virtual void Connected() = 0;
    virtual void Replied(const RigCommand& command, const RigReply& reply) = 0;
    // `unanswered` is the command under way, if any.
    virtual void Lost(RigLink::Cause cause, const RigCommand* unanswered) = 0;
    // Something waits for the next connection that must not wait long.
    virtual bool IsUrgent() const = 0;
    // The seconds until the next attempt are others now.
    virtual void CountdownChanged() = 0;
  };

  ServerSession(ByteChannel& channel, Scheduler& scheduler, Client& client);

  void Start(const ServerAddress& address);
  void Stop();

  bool IsConnected() const { return state_ == State::Connected; }
  // A write, a key or a release was sent and has not been answered.
  bool WriteUnderWay() const;
  // The server's numeric address; empty unless connected.
  std::optional<ServerAddress> Peer() const;
  // Rounded up; 0 unless the session waits before it connects again.
  int32_t RetryInSeconds() const;

  // There may be something to send now, or something urgent to connect for.
  void Pump();
  // Sends a command past the one under way, waiting at most `limit` for it to leave. False when it
  // did not. While there is no connection it goes over one of its own.
  bool SendAhead(const RigCommand& command, Milliseconds limit);

 private:
  enum class State { Stopped, Connecting, Connected, Waiting };

  void Connect();
  void OnConnected();
  void OnBytes(std::string_view bytes);
  void Drop(RigLink::Cause cause);
  void RetryAfter(Milliseconds pause);
  void WaitForRetry();
  void StartLimit();

  ByteChannel& channel_;
  Scheduler& scheduler_;
  Client& client_;
  State state_ = State::Stopped;
  ServerAddress address_;
  ReplyReader reader_;
  std::deque<RigCommand> underWay_;
  std::optional<SteadyTime> goodSince_;  // the first reply of this connection
  size_t attempt_ = 0;
  SteadyTime retryAt_;
  Scheduler::Handle timer_;  // connecting, the limit of a reply, the pause, or the retry
  Connections connections_;
};

}  // namespace velt

// A connection to a server that carries bytes. No call waits but SendNow().
#pragma once

#include <optional>
#include <string_view>

#include "adapters/rigctld/server_address.h"
#include "event/event.h"
#include "ports/omnirig.h"
#include "ports/scheduler.h"

namespace velt {

class ByteChannel {
 public:
  virtual ~ByteChannel() = default;

  // Raised on the window's thread, never from within a call.
  Event<> connected;
  Event<std::string_view> received;
  // HostNotFound, Refused, Unreachable or Closed. Not after an own Disconnect().
  Event<RigLink::Cause> closed;

  // Drops what was open and connects.
  virtual void Connect(const ServerAddress& address) = 0;
  // Connecting, and the host's name has not been found yet.
  virtual bool LooksUp() const = 0;
  virtual void Disconnect() = 0;
  // Only while connected.
  virtual void Send(std::string_view bytes) = 0;
  // The other end as a numeric address; empty unless connected.
  virtual std::optional<ServerAddress> Peer() const = 0;

  // Sends and waits at most `limit` until the bytes have left. When the channel is not connected, a
  // connection of its own is made for them within the same limit, provided that no name has to be
  // looked up. False when they did not leave.
  virtual bool SendNow(const ServerAddress& address, std::string_view bytes,
                       Milliseconds limit) = 0;
};

}  // namespace velt

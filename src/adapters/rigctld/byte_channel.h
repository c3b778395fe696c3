// A connection to a server that carries bytes. Its callbacks come on the window's thread, never
// from within a call.
#pragma once

#include <functional>
#include <string_view>

#include "adapters/rigctld/server_address.h"
#include "ports/scheduler.h"

namespace velt {

class ByteChannel {
 public:
  virtual ~ByteChannel() = default;

  std::function<void()> onConnected;
  std::function<void(std::string_view bytes)> onBytes;
  // Refused, not found, or lost. Not after an own Disconnect().
  std::function<void()> onClosed;

  // Drops what was open and connects; looking up the name does not block.
  virtual void Connect(const ServerAddress& address) = 0;
  virtual void Disconnect() = 0;
  // Only while connected.
  virtual void Send(std::string_view bytes) = 0;

  // Sends and waits at most `limit` until the bytes have left. When the channel is not connected, a
  // connection of its own is made for them within the same limit, provided that no name has to be
  // looked up. False when they did not leave.
  virtual bool SendNow(const ServerAddress& address, std::string_view bytes,
                       Milliseconds limit) = 0;
};

}  // namespace velt

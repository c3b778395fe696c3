// A server's address. Only numeric ones: looking up a name could take as long as it likes.
#pragma once

#include <sys/socket.h>

#include <cstdint>
#include <optional>
#include <string>

namespace velt {

struct PeerAddress {
  sockaddr_storage address{};
  socklen_t size = 0;
};

// "127.0.0.1", "::1", "fe80::1%eth0"; empty for anything else and for port 0.
std::optional<PeerAddress> NumericAddress(const std::string& host, uint16_t port);

}  // namespace velt

// Where a server listens, as text and taken apart.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velt {

struct ServerAddress {
  std::string host;   // name or number, without the brackets of an IPv6 address
  uint16_t port = 0;  // 1 to 65535

  std::string Text() const;  // "HOST:PORT"
  bool operator==(const ServerAddress&) const = default;
};

// "HOST:PORT", an IPv6 number in brackets, blanks around it allowed; empty when it is no address.
std::optional<ServerAddress> ParseServerAddress(std::string_view text);

}  // namespace velt

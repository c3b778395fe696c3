#include "guardian/peer_address.h"

#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>

#include <cstring>

#include "text/numbers.h"

namespace velt {
namespace {

template <class Address>
PeerAddress Stored(const Address& address) {
  PeerAddress peer;
  std::memcpy(&peer.address, &address, sizeof address);
  peer.size = sizeof address;
  return peer;
}

}  // namespace

std::optional<PeerAddress> NumericAddress(const std::string& host, uint16_t port) {
  if (port == 0) return std::nullopt;
  sockaddr_in four{};
  four.sin_family = AF_INET;
  four.sin_port = htons(port);
  if (::inet_pton(AF_INET, host.c_str(), &four.sin_addr) == 1) return Stored(four);

  sockaddr_in6 six{};
  six.sin6_family = AF_INET6;
  six.sin6_port = htons(port);
  const size_t zone = host.find('%');
  if (::inet_pton(AF_INET6, host.substr(0, zone).c_str(), &six.sin6_addr) != 1) return std::nullopt;
  if (zone != std::string::npos) {
    const std::string name = host.substr(zone + 1);
    const auto number = ParseWhole(name);
    six.sin6_scope_id =
        number && *number > 0 ? static_cast<uint32_t>(*number) : ::if_nametoindex(name.c_str());
    if (six.sin6_scope_id == 0) return std::nullopt;
  }
  return Stored(six);
}

}  // namespace velt

#include "adapters/rigctld/server_address.h"

#include <algorithm>

#include "text/numbers.h"

namespace velt {

namespace {

bool IsHostCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
         c == '-' || c == '_';
}

bool IsIPv6Character(char c) {
  return IsHostCharacter(c) || c == ':' || c == '%';
}

}  // namespace

std::string ServerAddress::Text() const {
  const bool bracketed = host.find(':') != std::string::npos;
  return (bracketed ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

std::optional<ServerAddress> ParseServerAddress(std::string_view text) {
  text = Trimmed(text);
  const size_t colon = text.rfind(':');
  if (colon == std::string_view::npos) return std::nullopt;
  std::string_view host = text.substr(0, colon);
  const std::string_view digits = text.substr(colon + 1);
  const bool bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  if (bracketed) host = host.substr(1, host.size() - 2);
  if (host.empty() ||
      !std::all_of(host.begin(), host.end(), bracketed ? IsIPv6Character : IsHostCharacter)) {
    return std::nullopt;
  }
  const bool onlyDigits =
      std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
  const auto port = onlyDigits ? ParseWhole(digits) : std::nullopt;
  if (!port || *port < 1 || *port > 65535) return std::nullopt;
  return ServerAddress{std::string(host), static_cast<uint16_t>(*port)};
}

}  // namespace velt

#include "rig/link_words.h"

#include <optional>

#include "text/formats.h"
#include "text/numbers.h"

namespace velt {

std::string LinkText(const RigLink& link) {
  const std::string stale = link.stale ? "Stale values, " : "";
  switch (link.state) {
    case RigLink::State::Off:
      return "Stopped";
    case RigLink::State::Linked:
      return "Linked";
    case RigLink::State::Connecting:
      return link.stale ? stale + "connecting" : "Connecting";
    case RigLink::State::Silent:
      return link.stale ? stale + "rig is silent" : "Rig is silent";
    case RigLink::State::Reconnecting:
      break;
  }
  const std::string when =
      link.retryInSeconds > 0 ? " in " + std::to_string(link.retryInSeconds) + " s" : "";
  return (link.stale ? stale + "reconnecting" : "Reconnecting") + when;
}

std::string ShortLinkText(const RigLink& link, bool simulated) {
  RigLink bare = link;
  bare.stale = false;
  const std::string text = Lowered(LinkText(bare));
  return simulated && link.state == RigLink::State::Linked ? "simulated rig" : text;
}

std::string CauseText(RigLink::Cause cause) {
  switch (cause) {
    case RigLink::Cause::None:
      return "";
    case RigLink::Cause::HostNotFound:
      return "Host not found: check the name before the colon";
    case RigLink::Cause::Refused:
      return "Connection refused: is rigctld running?";
    case RigLink::Cause::Unreachable:
      return "Not reachable: check the address and the network";
    case RigLink::Cause::Closed:
      return "The server ended the connection: look at what rigctld says";
    case RigLink::Cause::NoAnswer:
      return "No answer: is it rigctld, and is the radio on?";
    case RigLink::Cause::WrongAnswer:
      return "Not the answer of rigctld: check the port";
    case RigLink::Cause::RigSilent:
      return "The rig does not answer: check its power, cable and speed";
    case RigLink::Cause::RigOff:
      return "The rig is turned off";
  }
  return "";
}

LampColour LampOf(const RigLink& link) {
  if (link.state == RigLink::State::Linked) return LampColour::Green;
  return link.state == RigLink::State::Off ? LampColour::Grey : LampColour::Amber;
}

std::string ServerCommand(const std::string& address) {
  const size_t colon = address.rfind(':');
  if (colon == std::string::npos) return "";
  const std::optional<int32_t> port = ParseWhole(Trimmed(address.substr(colon + 1)));
  if (!port || *port < 1 || *port > 65535) return "";
  return "rigctld -m MODEL -r /dev/ttyUSB0 -t " + std::to_string(*port);
}

}  // namespace velt

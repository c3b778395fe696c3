#include "rig/serial_config.h"

#include "text/field_reader.h"
#include "text/formats.h"
#include "text/numbers.h"

namespace velt {
namespace {

constexpr size_t kShortestName = 3;

}  // namespace

SerialConfig ReadSerialConfig(std::string_view text) {
  SerialConfig config;
  FieldReader file(text);
  const auto port = file.Number16();
  if (!port) return config;
  config.portNumber = *port;
  if (*port <= 0) return config;

  const auto baud = file.Number32();
  const auto parity = file.Text();
  const auto dataBits = file.Number16();
  const auto stopBits = file.Number16();
  const auto unused = file.Number16();
  const auto handshake = file.Text();
  const auto method = file.Text();
  const auto line = file.Line();
  config.complete = baud && parity && !parity->empty() && dataBits && stopBits && unused &&
                    handshake && method && line;
  if (!config.complete) return config;

  config.settings = std::to_string(*baud == 0 ? 9600 : *baud) + "," +
                    Raised(Trimmed(*parity)).substr(0, 1) + "," + std::to_string(*dataBits) + "," +
                    std::to_string(*stopBits);
  config.pttMethod = Raised(Trimmed(*method));
  // The CAT server's own way to key is no method of the port.
  if (config.pttMethod.size() < kShortestName || config.pttMethod == "OMNIRIG") {
    config.pttMethod = "NONE";
  }
  const std::string pttLine = Raised(Trimmed(*line));
  const bool both = pttLine.size() < kShortestName || pttLine == "BOTH";
  config.raisesDtr = both || pttLine == "DTR";
  config.raisesRts = both || pttLine == "RTS";
  return config;
}

}  // namespace velt

// The engine's file with its serial port's settings, "RS232.cfg".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velt {

struct SerialConfig {
  int16_t portNumber = 0;          // COM port; 0 or less: no port
  std::string settings = {};       // "9600,N,8,1"
  std::string pttMethod = "NONE";  // "NONE", "COM", "ARDUINO"
  bool raisesDtr = false;          // what keys with method "COM"
  bool raisesRts = false;
  bool complete = false;  // every item was there and could be read

  // The port is there to be used: the file was whole, names a port, and the method is not "NONE".
  bool UsesPort() const { return complete && portNumber >= 1 && pttMethod != "NONE"; }

  bool operator==(const SerialConfig&) const = default;
};

// Of a text that ends too soon, or holds something that is no number, what stands before it; such a
// configuration is not complete. A handshake is read and not used.
SerialConfig ReadSerialConfig(std::string_view text);

}  // namespace velt

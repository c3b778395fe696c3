// Sets up the serial port, the PTT method and the counter as the engine's file "RS232.cfg" says.
#pragma once

#include "platform/installation.h"
#include "ports/clock.h"
#include "ports/files.h"
#include "ports/serial_port.h"
#include "rig/arduino_counter.h"
#include "rig/arduino_port.h"
#include "rig/line_keyer.h"
#include "rig/ptt.h"
#include "rig/rig_state.h"
#include "rig/serial_config.h"

namespace velt {

class SerialSetup {
 public:
  struct Parts {
    RigState& state;
    LineKeyer& lines;
    ArduinoPort& arduino;
    ArduinoCounter& counter;
    Ptt& ptt;
    const Installation& installation;
  };
  struct Ports {
    SerialPort& port;
    const Files& files;
    const Clock& clock;
  };
  SerialSetup(const Parts& parts, const Ports& ports);

  // Reads the file and applies it; without one the method is "NONE". What was set up before stays
  // untouched when nothing has changed, and else is released first, the way it was keyed.
  void ReadRS232();

  // For the end of the program: the port is closed and stays so.
  void Close();

 private:
  void Apply(const SerialConfig& config);

  Parts parts_;
  Ports ports_;
  SerialConfig config_;
};

}  // namespace velt

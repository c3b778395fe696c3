// Keys a transmitter by the control lines of a serial port. That the port is open is the transmit
// state: it is opened to key, and after an error it stays closed until somebody keys again.
#pragma once

#include <cstdint>

#include "ports/serial_port.h"
#include "rig/keyer.h"

namespace velt {

class LineKeyer : public Keyer {
 public:
  explicit LineKeyer(SerialPort& port);

  // Which lines key; neither: there is no port to key by.
  void SetLines(bool dtr, bool rts);

  std::string Prepare() override;
  bool Key() override;
  void GiveUp() override;
  void Release() override;
  void ReleaseNow(Milliseconds) override { Release(); }
  Report Look() const override;
  std::optional<ReleaseRecipe> Recipe() const override;
  uint32_t Connection() const override { return openings_; }
  bool ComesBack() const override { return false; }

 private:
  SerialPort& port_;
  bool dtr_ = false;
  bool rts_ = false;
  bool opened_ = false;  // by this
  bool lost_ = false;    // it failed while it was open
  uint32_t openings_ = 0;
  Connections connections_;
};

}  // namespace velt

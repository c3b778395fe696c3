// For runs with nothing connected: there is no port to open.
#pragma once

#include <cerrno>

#include "ports/serial_port.h"

namespace velt {

class NoSerialPort : public SerialPort {
 public:
  void SetCommPort(int16_t) override {}
  void SetSettings(const std::string&) override {}
  void SetDTREnable(bool) override {}
  void SetRTSEnable(bool) override {}
  int Open() override { return ENODEV; }
  void Close() override {}
  bool IsOpen() const override { return false; }
  void Output(std::string_view) override {}
  size_t OutBufferCount() const override { return 0; }
  size_t InBufferCount() const override { return 0; }
  std::string Input(size_t) override { return {}; }
  int Descriptor() const override { return -1; }
};

}  // namespace velt

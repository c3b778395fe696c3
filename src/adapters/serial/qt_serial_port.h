// A serial port of the system.
#pragma once

#include <QObject>
#include <QSerialPort>
#include <chrono>
#include <memory>
#include <optional>

#include "adapters/serial/device_names.h"
#include "ports/scheduler.h"
#include "ports/serial_port.h"

namespace velt {

class QtSerialPort : public SerialPort {
 public:
  static constexpr size_t kMostInput = 65536;  // bytes that nobody took
  static constexpr Milliseconds kStuckAfter{1000};

  // Needs the application's event loop.
  QtSerialPort(Scheduler& scheduler, DeviceNames names);
  ~QtSerialPort() override;

  void SetCommPort(int16_t number) override { number_ = number; }
  void SetSettings(const std::string& settings) override { settings_ = settings; }
  void SetDTREnable(bool on) override;
  void SetRTSEnable(bool on) override;

  int Open() override;
  void Close() override;
  bool IsOpen() const override { return device_ != nullptr; }

  void Output(std::string_view bytes) override;
  size_t OutBufferCount() const override;
  size_t InBufferCount() const override;
  std::string Input(size_t count) override;
  int Descriptor() const override;

 private:
  bool ApplySettings(QSerialPort& device) const;
  void BringLines(QSerialPort& device) const;
  void TakeInput();
  void LookWhetherDrained();
  void Failed(int error);
  size_t Count(unsigned long request) const;

  Scheduler& scheduler_;
  DeviceNames names_;
  int16_t number_ = 1;
  std::string settings_ = "9600,N,8,1";
  bool dtr_ = false;
  bool rts_ = false;
  std::unique_ptr<QSerialPort> device_;  // while it is open
  SteadyTime lastOutput_;
  Scheduler::Handle drainLook_;
  Scheduler::Handle failing_;
};

}  // namespace velt

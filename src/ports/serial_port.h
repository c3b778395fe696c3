// One serial port. Bytes go out and come in while the loop runs; no call waits for the line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "event/event.h"

namespace velt {

class SerialPort {
 public:
  virtual ~SerialPort() = default;

  // Raised on the window's thread, never from within a call.
  Event<> received;  // there is something to read
  Event<> drained;   // all that was written has gone out
  // The open port failed (it was unplugged, the line hung up) and has been closed. The system's
  // error number.
  Event<int> failed;

  // What holds from the next Open on. `number`: COM port 1, 2, ...; which device that is, the
  // adapter knows. `settings`: baud, parity letter N, O or E, data bits, stop bits: "9600,N,8,1".
  virtual void SetCommPort(int16_t number) = 0;
  virtual void SetSettings(const std::string& settings) = 0;
  // Whether the lines are raised while the port is open; an open port follows at once. A device
  // without such lines does nothing.
  virtual void SetDTREnable(bool on) = 0;
  virtual void SetRTSEnable(bool on) = 0;

  // Opens it with the lines as wanted; the system may have raised both for a moment before. When
  // the last one who has the device open is gone, it lowers them. Returns 0, or the system's error
  // number; EINVAL for settings that nobody understands. An open port stays as it is.
  virtual int Open() = 0;
  // Lowers both lines before, so that nothing that they key stays on. What was written goes out
  // still, unless the device has not taken it for a while.
  virtual void Close() = 0;
  virtual bool IsOpen() const = 0;

  // Queued; nothing while closed.
  virtual void Output(std::string_view bytes) = 0;
  virtual size_t OutBufferCount() const = 0;

  // What has come in, read from the device already or not. Much of it that nobody takes is dropped.
  virtual size_t InBufferCount() const = 0;
  // The oldest `count` bytes that came in, or as many as have been read from the device.
  virtual std::string Input(size_t count) = 0;

  // Of the open device, for duplicates; -1 while closed.
  virtual int Descriptor() const = 0;
};

}  // namespace velt

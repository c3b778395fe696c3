// The Arduino behind the serial port: counts come in and letters go out. Keeps the port open while
// it is in use; after an error, or when it could not be opened, it is tried again with a pause.
#pragma once

#include <cstdint>
#include <string_view>

#include "event/event.h"
#include "ports/scheduler.h"
#include "ports/serial_port.h"

namespace velt {

class ArduinoPort {
 public:
  // Opening the port resets many of them: they are ready then, or at their first line.
  static constexpr Milliseconds kReadyAfter{2000};
  // What comes earlier was under way before.
  static constexpr Milliseconds kFirstLineAfter{300};
  static constexpr Milliseconds kReopenAfter{2000};

  ArduinoPort(SerialPort& port, Scheduler& scheduler);

  // Text came in, in any pieces. From the loop, or from within Poll.
  Event<std::string_view> received;
  // From the loop: it was opened, became ready, failed, or took everything that was written.
  Event<> changed;

  // Opens the port now and keeps it open; or leaves it closed.
  void Use(bool wanted);

  // At once, without regard to the pause. Returns 0 when it is open, or the system's error number;
  // ENODEV when it is not in use.
  int Open();

  bool IsOpen() const { return inUse_ && port_.IsOpen(); }
  bool IsReady() const { return IsOpen() && ready_; }
  uint32_t Openings() const { return openings_; }  // how often it was opened so far

  void Write(std::string_view bytes) { port_.Output(bytes); }
  bool HasLeft() const { return port_.OutBufferCount() == 0; }

  // Takes what has come in. True when there was something, or there is something not read yet.
  bool Poll();

  int Descriptor() const { return IsOpen() ? port_.Descriptor() : -1; }

 private:
  void TryLater();
  void BecomeReady();
  void Failed();

  SerialPort& port_;
  Scheduler& scheduler_;
  bool inUse_ = false;
  bool ready_ = false;
  uint32_t openings_ = 0;
  SteadyTime openedAt_;
  Scheduler::Handle readyTimer_;
  Scheduler::Handle retry_;
  Connections connections_;
};

}  // namespace velt

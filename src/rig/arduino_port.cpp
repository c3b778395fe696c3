#include "rig/arduino_port.h"

#include <cerrno>
#include <string>

namespace velt {

ArduinoPort::ArduinoPort(SerialPort& port, Scheduler& scheduler)
    : port_(port), scheduler_(scheduler) {
  connections_ += port_.received.Listen([this] {
    if (inUse_) Poll();
  });
  connections_ += port_.drained.Listen([this] {
    if (inUse_) changed.Raise();
  });
  connections_ += port_.failed.Listen([this](int) {
    if (inUse_) Failed();
  });
}

void ArduinoPort::Use(bool wanted) {
  inUse_ = wanted;
  retry_.Cancel();
  if (wanted) {
    Open();
    return;
  }
  readyTimer_.Cancel();
  ready_ = false;
  port_.Close();
}

int ArduinoPort::Open() {
  if (!inUse_) return ENODEV;
  if (port_.IsOpen()) return 0;
  if (const int error = port_.Open()) {
    TryLater();
    return error;
  }
  retry_.Cancel();
  ++openings_;
  openedAt_ = scheduler_.Now();
  ready_ = false;
  readyTimer_ = scheduler_.After(kReadyAfter, [this] { BecomeReady(); });
  return 0;
}

bool ArduinoPort::Poll() {
  const std::string text = IsOpen() ? port_.Input(port_.InBufferCount()) : std::string();
  if (!text.empty()) received.Raise(text);
  if (!ready_ && scheduler_.Now() - openedAt_ >= kFirstLineAfter &&
      text.find('\n') != std::string::npos) {
    // Later, as what is held back for it must not go out from within somebody's call.
    readyTimer_ = scheduler_.After(Milliseconds(0), [this] { BecomeReady(); });
  }
  return !text.empty() || (IsOpen() && port_.InBufferCount() > 0);
}

void ArduinoPort::TryLater() {
  retry_ = scheduler_.After(kReopenAfter, [this] {
    if (Open() == 0) changed.Raise();
  });
}

void ArduinoPort::BecomeReady() {
  ready_ = true;
  changed.Raise();
}

void ArduinoPort::Failed() {
  ready_ = false;
  readyTimer_.Cancel();
  TryLater();
  changed.Raise();
}

}  // namespace velt

// An Arduino at the other end of a serial line: sends its count again and again, in pieces, and
// hears letters.
#pragma once

#include <array>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "support/serial_line.h"

namespace velt {

class ArduinoStandIn {
  auto Locked(auto action) {
    const std::lock_guard lock(mutex_);
    return std::invoke(action, line_);
  }

 public:
  ArduinoStandIn() : thread_([this](const std::stop_token& stop) { Run(stop); }) {}

  std::string Path() const { return line_.Path(); }
  void HangUp() { Locked(&SerialLine::HangUp); }
  void Connect() { Locked(&SerialLine::Connect); }
  bool IsClosed() { return Locked(&SerialLine::IsClosed); }
  std::string Heard() { return Locked(&SerialLine::Heard); }

 private:
  void Run(const std::stop_token& stop) {
    static constexpr std::array<std::string_view, 4> kPieces{"71", "000", "00\r", "\n"};
    for (size_t i = 0; !stop.stop_requested(); ++i) {
      ::poll(nullptr, 0, 30);  // at its own pace
      const std::lock_guard lock(mutex_);
      // Nobody reads what a closed line is told.
      if (!line_.IsClosed()) line_.Say(kPieces[i % kPieces.size()]);
    }
  }

  std::mutex mutex_;
  SerialLine line_;
  std::jthread thread_;
};

}  // namespace velt

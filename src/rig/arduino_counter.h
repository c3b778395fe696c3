// The Arduino that counts the rig's frequency and takes the rig's place where there is no CAT link.
#pragma once

#include <cstdint>
#include <string>

#include "form/main_form.h"
#include "ports/scheduler.h"
#include "rig/arduino_port.h"
#include "rig/count_reader.h"
#include "rig/rig_display.h"
#include "rig/rig_state.h"
#include "rig/status_file.h"

namespace velt {

class ArduinoCounter {
 public:
  // A frequency that is older is drawn as stale.
  static constexpr Milliseconds kFreshFor{5000};

  struct Parts {
    RigControls& form;
    RigState& state;
    RigDisplay& display;
    ArduinoPort& port;
    StatusFile& statusFile;
    const Scheduler& scheduler;
  };
  explicit ArduinoCounter(const Parts& parts);

  // The rig is off line: with method "ARDUINO" the counter can take its place, and does if its menu
  // item is checked.
  void Offer();

  // The PTT method may have changed.
  void FollowMethod();

  // Shows the newest count, "Com error" while the port cannot be had.
  void tmrFreqcount_Timer();

  // The text for a count; empty for what is none. The engine is told every third one, if it differs
  // from what it was told last.
  std::string FormatDisplay(const std::string& text);

  int32_t LastCountHz() const { return lastCountHz_; }

 private:
  // What is added to a count, and how it is shown.
  static constexpr int64_t kFirstOffsetHz = 0;
  static constexpr int64_t kSecondOffsetHz = 0;
  static constexpr int16_t kDisplayFormat = 1;
  static constexpr Milliseconds kPause{150};

  void Hear(std::string_view text);
  void FollowOpening();
  void Begin();
  void Show(const std::string& count);
  void MarkStale(bool stale);

  Parts parts_;
  CountReader reader_;
  uint32_t opening_ = 0;  // that the reader follows
  SteadyTime lastHeard_;
  SteadyTime lastShown_;
  bool offered_ = false;
  int32_t lastCountHz_ = 0;
  int32_t lastWritten_ = 0;
  int16_t writeTurn_ = 0;
  Connections connections_;
};

}  // namespace velt

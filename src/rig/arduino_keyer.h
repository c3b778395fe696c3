// Keys a transmitter through an Arduino: "T" transmits, "R" receives.
#pragma once

#include <cstdint>
#include <string>

#include "ports/scheduler.h"
#include "rig/arduino_port.h"
#include "rig/keyer.h"

namespace velt {

class ArduinoKeyer : public Keyer {
 public:
  // A "T" that was held back for longer belongs to a program that stood still.
  static constexpr Milliseconds kStale{5000};

  ArduinoKeyer(ArduinoPort& port, const Scheduler& scheduler);

  // Opens the port if it is closed. The letter goes out when the Arduino is ready.
  std::string Prepare() override;
  bool Key() override;
  // Opens the port if it is closed; without one it goes first once there is one again.
  void Release() override;
  void ReleaseNow(Milliseconds) override;
  Report Look() const override;
  std::optional<ReleaseRecipe> Recipe() const override;
  uint32_t Connection() const override { return port_.Openings(); }

 private:
  void SendHeldBack();

  ArduinoPort& port_;
  const Scheduler& scheduler_;
  std::string heldBack_;
  SteadyTime keyedAt_;
  bool released_ = false;  // "R" is the last letter that was written
  Connections connections_;
};

}  // namespace velt

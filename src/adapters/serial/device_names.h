// Which device a COM port's number stands for.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "ports/settings_store.h"

namespace velt {

class DeviceNames {
 public:
  // `only`: the device that every number stands for in this run, a path or a name in the folder of
  // devices; empty: none.
  DeviceNames(const SettingsStore& settings, std::filesystem::path only,
              std::filesystem::path devices = "/dev")
      : settings_(settings), only_(std::move(only)), devices_(std::move(devices)) {}

  // What the section "SerialPorts" names for "COM<number>": a path, or a name in the folder of
  // devices. Without such an entry ttyUSB<number-1>, or ttyACM<number-1> if only that is there.
  std::filesystem::path Of(int16_t number) const;

 private:
  const SettingsStore& settings_;
  std::filesystem::path only_;
  std::filesystem::path devices_;
};

}  // namespace velt

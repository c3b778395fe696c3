// Everything around the program that a walk needs, for this walk alone.
#pragma once

#include "support/pulse_server.h"

namespace velt {

struct Surroundings {
  PulseServer sound;
  TempFolder home;

  std::vector<std::string> Environment() const {
    std::vector<std::string> all{"HOME=" + home.Path().string(),
                                 "XDG_RUNTIME_DIR=" + home.Path().string(),
                                 "XDG_CONFIG_HOME=" + (home.Path() / "config").string()};
    for (const auto& entry : sound.Environment()) {
      if (entry.starts_with("PULSE_")) all.push_back(entry);
    }
    return all;
  }
  std::string Settings() const {
    return ReadText(home.Path() / "config" / "KALVARO" / "VELT-SA.ini");
  }
};

}  // namespace velt

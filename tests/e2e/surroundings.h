// Everything around the program that a walk needs, for this walk alone.
#pragma once

#include "support/pulse_server.h"

namespace velt {

struct Surroundings {
  PulseServer sound;
  TempFolder home;

  std::vector<std::string> Environment() const {
    std::vector<std::string> all = sound.Environment();
    all.push_back("HOME=" + home.Path().string());
    all.push_back("XDG_RUNTIME_DIR=" + home.Path().string());
    all.push_back("XDG_CONFIG_HOME=" + (home.Path() / "config").string());
    return all;
  }
  std::string Settings() const {
    return ReadText(home.Path() / "config" / "KALVARO" / "VELT-SA.ini");
  }
};

}  // namespace velt

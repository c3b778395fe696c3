// What is decided outside for one run of the program, mostly by the command line.
#pragma once

#include <array>
#include <filesystem>
#include <string>

#include "platform/installation.h"
#include "presets/preset_store.h"
#include "rig/omnirig_link.h"

namespace velt {

struct RunSetup {
  Installation installation;                // version, program and engine folder are known
  std::string audioDevice;                  // source of the sound; empty: the system's default
  std::array<std::string, 2> rigAddresses;  // of the rigs' servers; empty: as stored
  OmniRigLink::Questions questions = OmniRigLink::Questions::Asked;
  bool resetSettings = false;
  bool exemptFromSingleInstance = false;
  bool startAnalyser = false;
  bool controlsEngine = true;  // somebody sees its window; else it is not started by itself
  PresetStore::Keeping presets = PresetStore::Keeping::OnDisk;
  std::filesystem::path dataFolder;  // empty: below the home folder
};

}  // namespace velt

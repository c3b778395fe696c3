// The program's settings: one table of keys, applied to live state when loaded and read back from
// that live state when saved.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "audio/capture.h"
#include "audio/display_options.h"
#include "dialogs/display_colours.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "platform/platform_helpers.h"
#include "ports/omnirig.h"
#include "ports/settings_store.h"
#include "rig/ptt_guard.h"
#include "rig/rig_state.h"
#include "shell/window_layout.h"

namespace velt {

// Values that are only carried from one run to the next until the part that uses them reads them.
struct CarriedSettings {
  std::string version;  // of the program that wrote the settings; empty at the first start
  int32_t expander = 1;
  int32_t recSampleRateHz = 44100;
  float oscilloscopeTimeBase = 2.0F;
  // Where the servers of rig 1 and 2 are; empty: not set up, the default holds.
  std::array<std::string, 2> rigAddresses;
};

class Settings {
 public:
  struct Targets {
    Main& form;
    PlatformHelpers& platform;
    const Installation& installation;
    DisplayOptions& display;
    DisplayColours& colours;
    Capture& capture;
    WindowLayout& layout;
    RigState& rig;
    IOmniRigX& server;
    PttGuard& guard;
    CarriedSettings& carried;
  };
  Settings(SettingsStore& store, Targets targets);

  // Reads every key in the stated order and applies it at once. Requires the engine-present flag.
  void LoadRegistryStuff();

  // Reads the live state and writes every key. Returns the store's error number, 0 for success; the
  // store has told the log of an error.
  int SaveRegistryStuff();

  // The addresses of the rigs' servers were changed by the user, so they are the ones to save.
  void KeepRigAddresses();

  // Addresses of the rigs' servers that hold for this run, whatever is stored; empty: as stored.
  std::array<std::string, 2> addressesOfThisRun;

  // Deletes all settings, the backup too.
  int Reset() { return store_.DeleteAll(); }

 private:
  struct Row {
    std::string_view key;
    std::function<std::string()> fallback;              // default when missing
    std::function<void(const std::string& text)> load;  // empty: write only
    std::function<std::string()> save;
  };

  void LoadCat();
  void SaveCat();
  std::vector<Row> Table();
  std::vector<Row> WindowRows();
  std::vector<Row> DisplayRows();
  std::vector<Row> ProgramRows();
  const Row& Find(std::string_view key) const;

  SettingsStore& store_;
  Targets to_;
  std::vector<Row> rows_;
};

}  // namespace velt

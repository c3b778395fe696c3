// The program's settings: one table of keys, applied to live state when loaded and read back from
// that live state when saved.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "audio/audio_choice.h"
#include "audio/capture.h"
#include "display/main_display.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "platform/on_top.h"
#include "ports/omnirig.h"
#include "ports/settings_store.h"
#include "rig/rig_state.h"
#include "rig/transmit_guard.h"
#include "shell/window_layout.h"
#include "shell/window_scale.h"

namespace velt {

// Values that are only carried from one run to the next until the part that uses them reads them.
struct CarriedSettings {
  std::string version;  // of the program that wrote the settings; empty at the first start
  int32_t expander = 1;
  bool onTop = true;  // as loaded, unless the user clicked the item
  int32_t recSampleRateHz = 44100;
  float oscilloscopeTimeBase = 2.0F;
  // Where the servers of rig 1 and 2 are; empty: not set up, the default holds.
  std::array<std::string, 2> rigAddresses;
};

class Settings {
 public:
  struct Parts {
    Main& form;
    OnTop& onTop;
    const Installation& installation;
    MainDisplay& display;
    Capture& capture;
    WindowLayout& layout;
    WindowScale& scale;
    AudioChoice& audio;
    RigState& rig;
    TransmitGuard& guard;
    CarriedSettings& carried;
  };
  struct Ports {
    SettingsStore& store;
    IOmniRigX& server;
  };
  // `addressesOfThisRun` are those of the rigs' servers that hold for this run, whatever is stored;
  // empty: as stored.
  Settings(const Parts& parts, const Ports& ports, std::array<std::string, 2> addressesOfThisRun);

  // Reads every key in the stated order and applies it at once. Requires the engine-present flag.
  void LoadRegistryStuff();

  // Reads the live state and writes every key. Returns the store's error number, 0 for success; the
  // store has told the log of an error.
  int SaveRegistryStuff();

  // The addresses of the rigs' servers were changed by the user, so they are the ones to save.
  void KeepRigAddresses();

  // Deletes all settings, the backup too. Returns the error number.
  int Reset() { return ports_.store.DeleteAll(); }

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

  Parts to_;
  Ports ports_;
  std::array<std::string, 2> addressesOfThisRun_;
  std::vector<Row> rows_;
  Connections connections_;
};

}  // namespace velt

// The presets at start-up and shutdown: what is opened, what the user is told, what the panel
// shows.
#pragma once

#include <filesystem>
#include <string>

#include "dialogs/message_line.h"
#include "platform/installation.h"
#include "ports/files.h"
#include "ports/log.h"
#include "ports/prompts.h"
#include "presets/preset_exchange.h"
#include "presets/preset_panel.h"
#include "presets/preset_store.h"
#include "presets/preset_table.h"

namespace velt {

class PresetFiles {
 public:
  struct Parts {
    PresetTable& presets;
    PresetPanel& panel;
    MessageLine& messages;
    const Installation& installation;
  };
  struct Ports {
    Files& files;
    Prompts& prompts;
    Log& log;
  };
  PresetFiles(const Parts& parts, const Ports& ports, PresetStore::Keeping keeping);

  // At start-up: converts the older file, or else opens the present one, or else shows the
  // program's own presets.
  void OpenPresets();
  void OpenExpandedPresets();
  void OpenAndConvertOldPresets();

  // Writes what was changed since. Returns the system's error number; then the file is as it was.
  int SaveExpandedPresets() { return store_.Save(); }

  // The table as CSV. Both return what failed, as a line for people; empty for success.
  std::string ExportPresets(const std::filesystem::path& file) const;
  std::string ImportPresets(const std::filesystem::path& file);

 private:
  void Show();

  Parts parts_;
  Ports ports_;
  PresetStore store_;
  PresetExchange exchange_;
};

}  // namespace velt

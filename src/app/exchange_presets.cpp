#include "app/exchange_presets.h"

#include <memory>
#include <string>

#include "adapters/files/disk_files.h"
#include "adapters/files/output_file.h"
#include "app/adapters.h"
#include "app/console.h"
#include "presets/preset_csv.h"
#include "presets/preset_exchange.h"
#include "text/error_text.h"
#include "text/paths.h"

namespace velt {
namespace {

class WarningLog : public Log {
 public:
  void Write(LogLevel, const char*, std::string_view text) override { Warn(std::string(text)); }
};

// The presets of a data folder without the program around them.
struct KeptPresets {
  KeptPresets(const Options& options, PresetStore::Keeping keeping)
      : store(table, installation, keeping, {.files = files, .log = log}) {
    installation.dataFolder = DataFolder(options);
  }

  // As the program would at its start. Returns PresetStore::Read's error.
  int Open() {
    if (store.HasOldFile() && store.Convert()) return 0;
    return store.HasFile() ? store.Read() : 0;
  }

  DiskFiles files;
  WarningLog log;
  Installation installation;
  PresetTable table;
  PresetStore store;
};

}  // namespace

int ExportPresets(const Options& options) {
  KeptPresets presets(options, PresetStore::Keeping::ReadOnly);
  if (const int error = presets.Open()) {
    return Fail("The presets in " + PathText(presets.store.File()) + " cannot be used" +
                (error > 0 ? ": " + ErrorText(error) : "."));
  }
  OutputFile output;
  int error = output.Open(options.exportPresets);
  if (error == 0) error = output.Write(PresetCsv(presets.table));
  if (error == 0) error = output.Commit();
  return error == 0 ? 0 : FailToWrite(options.exportPresets, error);
}

int ImportPresets(const Options& options) {
  const auto lock = MakeInstanceLock();
  if (!lock->TryHold()) {
    return Fail("Another VELT-SA of this user is running; close it before presets are imported.");
  }
  KeptPresets presets(options, PresetStore::Keeping::OnDisk);
  presets.Open();  // what cannot be used is set aside when the new ones are there
  const std::string failure =
      PresetExchange(presets.table, presets.store, presets.files).Import(options.importPresets);
  if (!failure.empty()) return Fail(failure);
  return Print("The presets are now in " + PathText(presets.store.File()) + "\n");
}

}  // namespace velt

#include "presets/preset_exchange.h"

#include "presets/preset_csv.h"
#include "text/error_text.h"
#include "text/paths.h"

namespace velt {

std::string PresetExchange::Export(const std::filesystem::path& file) const {
  // By any name.
  const auto there = files_.Stamp(file);
  const bool same = there && there == files_.Stamp(store_.File());
  if (same || file.lexically_normal() == store_.File().lexically_normal()) {
    return PathText(file) + " is the file of the presets themselves.";
  }
  const int error = files_.Replace(file, PresetCsv(presets_), false);
  return error == 0 ? "" : PathText(file) + " could not be written: " + ErrorText(error);
}

std::string PresetExchange::Import(const std::filesystem::path& file) {
  std::string text;
  if (const int error = store_.ReadSmall(file, text)) {
    return PathText(file) + " could not be read: " + ErrorText(error);
  }
  PresetTable imported = presets_;
  if (const std::string mistake = ReadPresetCsv(text, imported); !mistake.empty()) {
    return PathText(file) + ", " + mistake;
  }
  // First what the user has changed, so that it is in the file that becomes the backup.
  int error = store_.Save();
  const PresetTable before = presets_;
  if (error == 0) {
    presets_ = imported;
    // A file that could not be read stands for the same table, and has to go.
    error = store_.Save(PresetStore::When::Always);
  }
  if (error == 0) return "";
  presets_ = before;
  return "The presets could not be saved: " + ErrorText(error);
}

}  // namespace velt

#include "presets/preset_files.h"

#include "text/error_text.h"

namespace velt {

PresetFiles::PresetFiles(const Parts& parts, const Ports& ports, PresetStore::Keeping keeping)
    : parts_(parts),
      ports_(ports),
      store_(parts_.presets, parts_.installation, keeping,
             {.files = ports_.files, .log = ports_.log}),
      exchange_(parts_.presets, store_, ports_.files) {}

void PresetFiles::OpenPresets() {
  if (store_.HasOldFile()) return OpenAndConvertOldPresets();
  if (store_.HasFile()) return OpenExpandedPresets();
  parts_.presets.PresetDefaults();
  Show();
}

void PresetFiles::OpenExpandedPresets() {
  const int error = store_.Read();
  if (error == PresetStore::kWrongHeader) {
    ports_.prompts.Tell({.title = "VELT-SA", .text = "This is not the correct INI file"}, {});
  } else if (error != 0) {
    ports_.prompts.Tell(
        {.title = "Error opening INI. Error nr " + std::to_string(error),
         .text = "Error reading file: ExpandPresets.ini. Using default Frequency Preset settings",
         .icon = BoxIcon::Exclamation},
        {});
  }
  Show();
}

void PresetFiles::OpenAndConvertOldPresets() {
  parts_.presets.PresetDefaults();
  if (!store_.HasOldFile()) return OpenExpandedPresets();
  if (!store_.Convert()) {
    parts_.messages.Show("FreqSets.ini could not be converted");
    if (store_.HasFile()) return OpenExpandedPresets();
    return Show();
  }
  Show();
  // From now on the user's changes are made to the new file.
  if (const int error = store_.Save()) {
    parts_.messages.Show("Converted presets not saved: " + ErrorText(error));
  } else if (store_.HasOldFile()) {
    parts_.messages.Show("FreqSets.ini cannot be deleted and will be converted again");
  }
}

std::string PresetFiles::ExportPresets(const std::filesystem::path& file) const {
  return exchange_.Export(file);
}

std::string PresetFiles::ImportPresets(const std::filesystem::path& file) {
  std::string failure = exchange_.Import(file);
  if (failure.empty()) Show();
  return failure;
}

void PresetFiles::Show() {
  parts_.panel.ShowModes();
  parts_.panel.UpdatePresets(0, 0, true);
}

}  // namespace velt

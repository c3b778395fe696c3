// The band preset dialog `frmSetFreqs`: titles and first frequencies of all bands at once, and the
// whole table as CSV.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "form/bands_form.h"
#include "platform/installation.h"
#include "platform/on_top.h"
#include "ports/file_chooser.h"
#include "ports/files.h"
#include "ports/prompts.h"
#include "presets/preset_files.h"
#include "presets/preset_panel.h"
#include "presets/preset_table.h"

namespace velt {

class BandDialog {
 public:
  struct Parts {
    BandsForm& form;
    PresetTable& presets;
    PresetPanel& panel;
    PresetFiles& presetFiles;
    OnTop& onTop;
    const Installation& installation;
  };
  struct Ports {
    FileChooser& chooser;
    Prompts& prompts;
    const Files& files;
  };
  // `opener` is the menu's item.
  BandDialog(MenuItem& opener, const Parts& parts, const Ports& ports);

  // Shows the dialog with the table as it is; one that is open comes before the other windows.
  void Open();
  // Closes it; what was typed is gone.
  void Close();

  void Command1_Click();  // OK
  // An import replaces the whole table at once, and what is typed; a file with a mistake changes
  // neither. An export has what is in the table.
  void cmdImport_Click();
  void cmdExport_Click();

 private:
  // A field and the table's text that it stands for.
  struct Field {
    TextBox& box;
    std::string& cell;
    std::string shown = {};  // of the cell, when the field was filled
    bool Edited() const { return box.text.Get() != shown; }
  };

  void Form_Load();
  bool Edited() const;
  using Use = void (BandDialog::*)(const std::filesystem::path& file);
  void AskForFile(const char* title, const char* name, Use use);
  void Import(const std::filesystem::path& file);
  void ExportAs(const std::filesystem::path& file);
  void Export(const std::filesystem::path& file);
  // What became of a file; a failure is empty for success.
  void Tell(const std::string& success, const std::string& failure);

  Parts parts_;
  Ports ports_;
  std::vector<Field> fields_;
  std::filesystem::path folder_;  // where the last file was
  uint32_t question_ = 0;         // for a file, while it is open
  OnTop::Lowered lowered_;        // while it is open
  Connections connections_;
};

}  // namespace velt

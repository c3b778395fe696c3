#include "presets/band_dialog.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "text/paths.h"

namespace velt {

BandDialog::BandDialog(MenuItem& opener, const Parts& parts, const Ports& ports)
    : parts_(parts), ports_(ports) {
  BandsForm& form = parts_.form;
  for (int32_t band = 0; band < PresetTable::kBands; ++band) {
    fields_.push_back({form.txtFreqCaption[band], parts_.presets.Cell(band, PresetTable::kTitle)});
    fields_.push_back(
        {form.txtFrequencies[band], parts_.presets.Cell(band, PresetTable::kFirstFrequency)});
  }
  connections_ += opener.clicked.Listen([this] { Open(); });
  connections_ += form.Window.closeAsked.Listen([this] { Close(); });
  connections_ += form.Command1.clicked.Listen([this] { Command1_Click(); });
  connections_ += form.Command2.clicked.Listen([this] { Close(); });
  connections_ += form.cmdImport.clicked.Listen([this] { cmdImport_Click(); });
  connections_ += form.cmdExport.clicked.Listen([this] { cmdExport_Click(); });
}

void BandDialog::Open() {
  if (parts_.form.Window.visible) return parts_.form.Window.BringForward();
  lowered_ = parts_.onTop.Lower();
  Form_Load();
  Tell("", "");
  parts_.form.Window.visible = true;
}

void BandDialog::Close() {
  if (!parts_.form.Window.visible) return;
  ports_.chooser.Drop(std::exchange(question_, 0));
  parts_.form.Window.visible = false;
  lowered_.reset();
}

void BandDialog::Form_Load() {
  for (Field& field : fields_) field.box.text = field.shown = field.cell;
}

bool BandDialog::Edited() const {
  return std::ranges::any_of(fields_, [](const Field& field) { return field.Edited(); });
}

// A text that was not touched stays as it is in the table: its bytes may be none that a field can
// show, and the panel may have changed it since.
void BandDialog::Command1_Click() {
  for (const Field& field : fields_) {
    if (field.Edited()) field.cell = field.box.text;
  }
  parts_.panel.UpdatePresets(0, 0, true);
  Close();
}

void BandDialog::cmdImport_Click() {
  AskForFile("Import presets", "", &BandDialog::Import);
}

void BandDialog::cmdExport_Click() {
  AskForFile("Export presets", "VELT-SA presets.csv", &BandDialog::ExportAs);
}

void BandDialog::AskForFile(const char* title, const char* name, Use use) {
  const bool known = !folder_.empty() && ports_.files.IsFolder(folder_);
  const uint32_t question =
      ports_.chooser.Ask({.title = title,
                          .folder = known ? folder_ : parts_.installation.dataFolder,
                          .name = name,
                          .kind = "Comma-separated values",
                          .patterns = {"*.csv"},
                          .ending = "csv"},
                         [this, use](const std::optional<std::filesystem::path>& file) {
                           if (std::exchange(question_, 0) == 0 || !file) return;
                           folder_ = file->parent_path();
                           (this->*use)(*file);
                         });
  if (question != 0) question_ = question;
}

void BandDialog::Import(const std::filesystem::path& file) {
  const std::string failure = parts_.presetFiles.ImportPresets(file);
  if (failure.empty()) Form_Load();
  Tell("Imported and saved: " + PathText(file.filename()), failure);
}

void BandDialog::ExportAs(const std::filesystem::path& file) {
  if (!ports_.files.Stamp(file)) return Export(file);
  ports_.prompts.Ask({.title = "Export presets",
                      .text = PathText(file.filename()) + " is there already. Replace it?",
                      .icon = BoxIcon::Question,
                      .yes = "Replace",
                      .no = "Cancel"},
                     [this, file](bool yes) {
                       if (yes) Export(file);
                     });
}

void BandDialog::Export(const std::filesystem::path& file) {
  const std::string failure = parts_.presetFiles.ExportPresets(file);
  Tell("Exported as " + PathText(file.filename()) +
           (Edited() ? ", without what is not kept yet" : ""),
       failure);
}

void BandDialog::Tell(const std::string& success, const std::string& failure) {
  BandsForm& form = parts_.form;
  if (!failure.empty() && !form.Window.visible) {
    return ports_.prompts.Tell(
        {.title = form.Window.caption, .text = failure, .icon = BoxIcon::Exclamation}, {});
  }
  // There is no room for a long folder, and what is wrong stands behind it.
  const std::string folder = PathText(folder_ / "");
  form.lblProblem.caption = failure.substr(failure.starts_with(folder) ? folder.size() : 0);
  form.lblProblem.toolTip = failure;
  form.lblMessage.caption = failure.empty() ? success : "";
}

}  // namespace velt

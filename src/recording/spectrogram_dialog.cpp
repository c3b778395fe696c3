#include "recording/spectrogram_dialog.h"

#include <utility>

#include "text/error_text.h"
#include "text/formats.h"
#include "text/paths.h"

namespace velt {

namespace fs = std::filesystem;

namespace {

// Shorter than half a tick of the analyser, with a pause in which whatever waits has its turn.
constexpr Milliseconds kSlice{10};
constexpr Milliseconds kPause{1};

}  // namespace

SpectrogramDialog::SpectrogramDialog(const Parts& parts, const Ports& ports)
    : parts_(parts), ports_(ports), maker_(ports.sound) {
  SpectrogramForm& dialog = parts_.dialog;
  connections_ += parts_.form.mnuspectrogram.clicked.Listen([this] { mnuspectrogram_Click(); });
  connections_ += dialog.cmdOpen.clicked.Listen([this] { cmdOpen_Click(); });
  connections_ += dialog.cmdCancel.clicked.Listen([this] { cmdCancel_Click(); });
  connections_ += dialog.cmdSave.clicked.Listen([this] { cmdSave_Click(); });
  connections_ += dialog.cmdClose.clicked.Listen([this] { cmdClose_Click(); });
  connections_ += dialog.Window.closeAsked.Listen([this] { cmdClose_Click(); });
}

void SpectrogramDialog::mnuspectrogram_Click() {
  if (!lowered_) lowered_ = parts_.onTop.Lower();
  cmdOpen_Click();
}

void SpectrogramDialog::cmdOpen_Click() {
  fs::path folder = soundFolder_;
  if (folder.empty() || !ports_.files.IsFolder(folder)) {
    folder = parts_.installation.dataFolder / "WAV";
  }
  Ask({.title = "Spectrogram of a recording",
       .folder = folder,
       .kind = "Sound files",
       .patterns = {"*.wav", "*.flac", "*.ogg", "*.oga", "*.opus", "*.mp3", "*.aif", "*.aiff",
                    "*.au", "*.snd", "*.w64", "*.rf64", "*.caf"}},
      &SpectrogramDialog::Open);
}

void SpectrogramDialog::Ask(const FileQuestion& question, Use use) {
  const uint32_t asked =
      ports_.chooser.Ask(question, [this, use](const std::optional<fs::path>& file) {
        question_ = 0;
        if (file) (this->*use)(*file);
        LowerOnlyWhileOpen();
      });
  if (asked != 0) question_ = asked;
  LowerOnlyWhileOpen();
}

// The chooser refuses while it is open for another dialog.
void SpectrogramDialog::LowerOnlyWhileOpen() {
  if (question_ == 0 && !parts_.dialog.Window.visible) lowered_.reset();
}

void SpectrogramDialog::Open(const fs::path& file) {
  file_ = file;
  soundFolder_ = file.parent_path();
  SpectrogramForm& dialog = parts_.dialog;
  dialog.Window.visible = true;
  dialog.lblProblem.caption = "";
  const std::string failure = maker_.Start({.file = file});
  if (!failure.empty()) return Fail(failure);
  dialog.lblMessage.caption = "Reading " + PathText(file.filename());
  dialog.prgWork.percent = 0;
  dialog.prgWork.visible = true;
  dialog.cmdCancel.enabled = true;
  slice_ = ports_.scheduler.After(kPause, [this] { WorkOn(); });
}

void SpectrogramDialog::WorkOn() {
  const SteadyTime end = ports_.scheduler.Now() + kSlice;
  bool more = true;
  while (more && ports_.scheduler.Now() < end) more = maker_.Work();
  parts_.dialog.prgWork.percent = static_cast<int32_t>(maker_.Share() * 100);
  if (!more) return Finish();
  slice_ = ports_.scheduler.After(kPause, [this] { WorkOn(); });
}

void SpectrogramDialog::Finish() {
  if (!maker_.Failure().empty()) return Fail(maker_.Failure());
  shown_ = maker_.Take();
  SpectrogramForm& dialog = parts_.dialog;
  dialog.picSpectrogram.frame = dialog.picSpectrogram.frame + 1;
  dialog.cmdSave.enabled = true;
  dialog.lblProblem.caption = ports_.sound.Warning();
  std::string strongest = StrongestText(*shown_);
  strongest.front() = Raised(strongest.substr(0, 1)).front();
  Stop(strongest);
}

// What was shown before stays.
void SpectrogramDialog::Fail(const std::string& problem) {
  parts_.dialog.lblProblem.caption = problem;
  Stop("");
}

void SpectrogramDialog::Stop(const std::string& message) {
  slice_.Cancel();
  SpectrogramForm& dialog = parts_.dialog;
  dialog.prgWork.visible = false;
  dialog.cmdCancel.enabled = false;
  dialog.lblMessage.caption = message;
}

void SpectrogramDialog::cmdCancel_Click() {
  Stop("Cancelled, " + PathText(file_.filename()) + " was not read to its end");
}

void SpectrogramDialog::cmdSave_Click() {
  if (!shown_) return;
  fs::path folder = pictureFolder_;
  if (folder.empty() || !ports_.files.IsFolder(folder)) {
    folder = parts_.installation.dataFolder / "BMP";
  }
  if (!ports_.files.IsFolder(folder)) folder = shown_->file.parent_path();
  fs::path name = shown_->file.stem();
  name += " spectrogram.png";
  Ask({.title = "Save the spectrogram",
       .folder = folder,
       .name = name,
       .kind = "PNG pictures",
       .patterns = {"*.png"},
       .ending = "png"},
      &SpectrogramDialog::SaveAs);
}

void SpectrogramDialog::SaveAs(const fs::path& file) {
  if (!shown_) return;
  pictureFolder_ = file.parent_path();
  const auto there = ports_.files.Stamp(file);
  if (!there) return Save(file);
  if (there == ports_.files.Stamp(shown_->file)) {
    parts_.dialog.lblProblem.caption =
        PathText(file) + " is the recording itself, it was left as it is.";
    return;
  }
  ports_.prompts.Ask({.title = "Save the spectrogram",
                      .text = PathText(file.filename()) + " is there already. Replace it?",
                      .icon = BoxIcon::Question,
                      .yes = "Replace",
                      .no = "Cancel"},
                     [this, file, asked = parts_.dialog.picSpectrogram.frame.Get()](bool yes) {
                       // Another recording may be shown by now.
                       if (yes && asked == parts_.dialog.picSpectrogram.frame) Save(file);
                     });
}

void SpectrogramDialog::Save(const fs::path& file) {
  if (!shown_) return;
  SpectrogramForm& dialog = parts_.dialog;
  const int error = ports_.writer.Write(*shown_, file);
  dialog.lblProblem.caption =
      error == 0 ? "" : PathText(file) + " could not be written: " + ErrorText(error) + ".";
  dialog.lblMessage.caption = error == 0 ? "Saved as " + PathText(file) : "";
}

void SpectrogramDialog::cmdClose_Click() {
  ports_.chooser.Drop(std::exchange(question_, 0));
  Stop("");
  SpectrogramForm& dialog = parts_.dialog;
  dialog.Window.visible = false;
  dialog.cmdSave.enabled = false;
  dialog.lblProblem.caption = "";
  shown_.reset();
  dialog.picSpectrogram.frame = dialog.picSpectrogram.frame + 1;
  lowered_.reset();
}

}  // namespace velt

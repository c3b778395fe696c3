// "Spectrogram of a recording": asks for a sound file, reads it in slices so short that the window
// and the analyser go on, shows its spectrogram and saves that where the user says.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "form/main_form.h"
#include "form/spectrogram_form.h"
#include "platform/installation.h"
#include "platform/on_top.h"
#include "ports/file_chooser.h"
#include "ports/files.h"
#include "ports/prompts.h"
#include "ports/scheduler.h"
#include "recording/spectrogram_maker.h"

namespace velt {

class SpectrogramDialog {
 public:
  struct Parts {
    Main& form;
    SpectrogramForm& dialog;
    const Installation& installation;
    OnTop& onTop;
  };
  struct Ports {
    SoundFile& sound;
    FileChooser& chooser;
    Prompts& prompts;
    SpectrogramWriter& writer;
    const Files& files;
    Scheduler& scheduler;
  };
  SpectrogramDialog(const Parts& parts, const Ports& ports);

  // The last one that was finished; null before, and once the dialog was closed.
  const RecordingSpectrogram* Shown() const { return shown_ ? &*shown_ : nullptr; }

  void mnuspectrogram_Click();
  void cmdOpen_Click();
  void cmdCancel_Click();
  void cmdSave_Click();
  void cmdClose_Click();

 private:
  using Use = void (SpectrogramDialog::*)(const std::filesystem::path& file);
  void Ask(const FileQuestion& question, Use use);
  void LowerOnlyWhileOpen();
  void Open(const std::filesystem::path& file);
  void WorkOn();
  void Finish();
  void Fail(const std::string& problem);
  void Stop(const std::string& message);
  void SaveAs(const std::filesystem::path& file);
  void Save(const std::filesystem::path& file);

  Parts parts_;
  Ports ports_;
  SpectrogramMaker maker_;
  std::optional<RecordingSpectrogram> shown_;
  std::filesystem::path file_;           // that is read, or was
  Scheduler::Handle slice_;              // while it is read
  std::filesystem::path soundFolder_;    // where the user found the last one
  std::filesystem::path pictureFolder_;  // where the last one was saved
  uint32_t question_ = 0;                // for a file, while it is open
  OnTop::Lowered lowered_;               // while the dialog or its first question is open
  Connections connections_;
};

}  // namespace velt

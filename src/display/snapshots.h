// Keeps what the display shows: as a file in the data folder's BMP folder or on the clipboard.
#pragma once

#include <filesystem>

#include "dialogs/message_line.h"
#include "display/analysis_tick.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "platform/platform_helpers.h"
#include "ports/clock.h"
#include "ports/files.h"
#include "ports/launcher.h"
#include "ports/pictures.h"
#include "ports/prompts.h"
#include "spectrum/raster.h"

namespace velt {

class Snapshots {
 public:
  struct Parts {
    DisplayControls& form;
    const AnalysisTick& tick;
    const DisplayOptions& options;
    const Installation& installation;
    const PlatformHelpers& platform;
    MessageLine& messages;
  };
  struct Ports {
    Files& files;
    Pictures& pictures;
    Launcher& launcher;
    Prompts& prompts;
    const Clock& clock;
  };
  Snapshots(const Parts& parts, const Ports& ports);

  // Writes "VELTSA_" + date + "_" + time + ".bmp" and a PNG of the same name beside it; files of
  // the same second are replaced. A failure is told in a box with the system's error number.
  void SaveBMP();

  void CopySpectrum();

  // Opens the folder of the pictures in the desktop's file manager.
  void mnuopenbmp_Click();

 private:
  std::filesystem::path Folder() const { return parts_.installation.dataFolder / "BMP"; }
  // The display as it stands, without the lines over it.
  Raster Picture() const;

  Parts parts_;
  Ports ports_;
  Connections connections_;
};

}  // namespace velt

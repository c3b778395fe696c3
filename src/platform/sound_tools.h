// The desktop's own sound recorder and volume control, whichever it has.
#pragma once

#include "ports/launcher.h"
#include "ports/prompts.h"

namespace velt {

class SoundTools {
 public:
  struct Ports {
    Launcher& launcher;
    Prompts& prompts;
  };
  explicit SoundTools(const Ports& ports) : ports_(ports) {}

  // Starts the first recorder that is installed; a box tells when none could be started.
  void OpenExternalRecorder();

  // What the volume control is to show first, where it can be told.
  enum class Side { Recording, Playback };
  // Starts the first volume control that is installed; a box tells when none could be started.
  void OpenVolumeControl(Side side);

 private:
  Ports ports_;
};

}  // namespace velt

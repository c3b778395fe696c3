#include "platform/sound_tools.h"

#include <array>
#include <cerrno>
#include <span>
#include <string>
#include <vector>

namespace velt {
namespace {

using Command = std::vector<std::string>;

// Starts the first one that can be. Returns 0, else why the first one that is there could not be
// started, or that there is none.
int StartFirst(Launcher& launcher, std::span<const Command> commands) {
  int failure = ENOENT;
  for (const Command& command : commands) {
    const int error = launcher.StartCommand(command);
    if (error == 0) return 0;
    if (failure == ENOENT) failure = error;
  }
  return failure;
}

void TellNotFound(Prompts& prompts, int error, const char* what, const char* advice) {
  prompts.Tell({.title = "Not found, Err:" + std::to_string(error),
                .text = std::string(what) + "\r\n" + advice +
                        "\r\nYou need a soundcard for this option to work.",
                .icon = BoxIcon::Exclamation},
               {});
}

}  // namespace

void SoundTools::OpenExternalRecorder() {
  const std::array<Command, 7> recorders{{{"gnome-sound-recorder"},
                                          {"audio-recorder"},
                                          {"krecorder"},
                                          {"kwave"},
                                          {"audacity"},
                                          {"mhwaveedit"},
                                          {"sweep"}}};
  const int error = StartFirst(ports_.launcher, recorders);
  if (error == 0) return;
  TellNotFound(
      ports_.prompts, error, "Could not find MS-Sound Recorder (SNDREC32.EXE)",
      "Install Microsoft Soundrecorder (Control Panel -> Add/Remove Software -> Windows Setup)");
}

void SoundTools::OpenVolumeControl(Side side) {
  const bool recording = side == Side::Recording;
  const std::string tab = recording ? "--tab=4" : "--tab=3";  // input, output devices
  // Those that run on any desktop come first: some of the others refuse to.
  const std::array<Command, 8> controls{
      {{"pavucontrol", tab},
       {"pavucontrol-qt", tab},
       {"mate-volume-control", recording ? "--page=input" : "--page=output"},
       {"cinnamon-settings", "sound"},
       {"gnome-control-center", "sound"},
       {"kcmshell6", "kcm_pulseaudio"},
       {"kcmshell5", "kcm_pulseaudio"},
       {"kmix"}}};
  const int error = StartFirst(ports_.launcher, controls);
  if (error == 0) return;
  TellNotFound(
      ports_.prompts, error, "Could not find MS-Volume Control (SNDVOL32.EXE, or SNDVOL.EXE)",
      "Install Microsoft Volume control (Control Panel -> Add/Remove Software -> Windows Setup)");
}

}  // namespace velt

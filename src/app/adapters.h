// Everything of the outside that a run uses, chosen by the command line. What is here is defined
// once for each operating system.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "adapters/guardian/guardian_spawn.h"
#include "app/options.h"
#include "ports/audio_input.h"
#include "ports/pasted_text.h"
#include "shell/program.h"

class QWidget;

namespace velt {

class Adapters {
 public:
  virtual ~Adapters() = default;
  virtual Program::Ports Ports() = 0;
  // For the text fields of the windows.
  virtual PastedText& Pasting() = 0;
  // The window that boxes and the colour chooser belong to.
  virtual void SetOwner(QWidget* owner) = 0;
  // From now on calls `asked`, from the loop, each time that the system wants the program to end:
  // by a signal, with the user's session, or by taking the owner's window away. Once in a
  // program's run.
  virtual void WatchForEnd(std::function<void()> asked) = 0;
};

// For a window or a headless window, with the guardian that was started before.
std::unique_ptr<Adapters> MakeAdapters(const Options& options, GuardianSpawn guardian);

// Where presets, recordings and pictures are kept for a run with these options.
std::filesystem::path DataFolder(const Options& options);

std::unique_ptr<InstanceLock> MakeInstanceLock();

// Where the settings are kept for a run with these options.
std::filesystem::path SettingsFile(const Options& options);

// Whether a CAT server can be reached at what --rig1 or --rig2 says.
bool IsRigAddress(const std::string& text);

struct SoundDevices {
  std::vector<AudioDevice> devices;
  std::string defaultName;  // empty: there is none
  std::string error;        // why there is no list; empty when there is one
};

class SoundDeviceLister {
 public:
  virtual ~SoundDeviceLister() = default;
  // Calls `told` once from the loop, within a few seconds, unless the lister is gone by then.
  virtual void List(std::function<void(const SoundDevices&)> told) = 0;
};
std::unique_ptr<SoundDeviceLister> MakeSoundDeviceLister();

}  // namespace velt

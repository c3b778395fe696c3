// Everything of the outside that a run uses, chosen by the command line.
#pragma once

#include <memory>

#include "adapters/guardian/guardian_spawn.h"
#include "app/options.h"
#include "shell/program.h"

class QWidget;

namespace velt {

class Adapters {
 public:
  virtual ~Adapters() = default;
  virtual ProgramPorts Ports() = 0;
  // The window that boxes belong to.
  virtual void SetOwner(QWidget* owner) = 0;
};

// For a window or a headless window, with the guardian that was started before. Defined once for
// each operating system.
std::unique_ptr<Adapters> MakeAdapters(const Options& options, GuardianSpawn guardian);

// Where the settings are kept for a run with these options.
std::filesystem::path SettingsFile(const Options& options);

}  // namespace velt

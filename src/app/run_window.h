// Runs the program with its window, on a display or without one.
#pragma once

#include "adapters/guardian/guardian_spawn.h"
#include "app/options.h"

class QApplication;

namespace velt {

// Returns the program's exit code.
int RunWindow(QApplication& application, const Options& options, GuardianSpawn guardian);

}  // namespace velt

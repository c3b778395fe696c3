// The runs that only give the presets away as CSV, or take some over: no window, no display.
#pragma once

#include "app/options.h"

namespace velt {

// Both return the run's exit code; one line on standard error says what failed.

// Writes the presets of the data folder as they are kept there, or the program's own where there
// are none. They stay as they are, in an older file too.
int ExportPresets(const Options& options);

// Not while the program runs, which would save its own presets over them.
int ImportPresets(const Options& options);

}  // namespace velt

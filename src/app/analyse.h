// Analyses a sound file as fast as the machine goes, without a window or a device.
#pragma once

#include "app/options.h"

namespace velt {

// Returns the program's exit code: 0, or 1 with one clear line on standard error.
int RunAnalyse(const AnalyseOptions& options);

}  // namespace velt

// Lets go of what the program keyed when it crashes.
#pragma once

#include "platform/release_registry.h"

namespace velt {

// From now on until the end of the program (or the next call) a crash first releases what the
// registry holds and then goes on as it would have. The registry must stay alive.
void InstallCrashHandler(ReleaseRegistry& registry);
void RemoveCrashHandler();

}  // namespace velt

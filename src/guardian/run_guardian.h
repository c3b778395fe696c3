// The guardian as a process: what `velt-sa --guardian` runs.
#pragma once

#include "guardian/guardian_loop.h"

namespace velt {

// Returns the exit code: 2 when it was not the program that called it.
int RunGuardian(const GuardianLimits& limits = {});

}  // namespace velt

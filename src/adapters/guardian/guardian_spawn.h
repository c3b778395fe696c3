// Starts the guardian process. Needs nothing of the rest of the program, so that it can be the very
// first thing that a run does.
#pragma once

#include <sys/types.h>

#include "guardian/guardian_socket.h"

namespace velt {

struct GuardianSpawn {
  GuardianSocket socket;  // not open: there is none
  pid_t process = -1;
};

// The running program once more, as its guardian: in a session of its own, with nothing inherited
// but its socket and the standard error output.
GuardianSpawn SpawnGuardian();

}  // namespace velt

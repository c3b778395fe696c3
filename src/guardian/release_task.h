// The release of one transmitter while it goes on, as the guardian's loop sees it.
#pragma once

#include <poll.h>

#include "ports/scheduler.h"

namespace velt {

class ReleaseTask {
 public:
  enum class State { UnderWay, Released, Failed };

  virtual ~ReleaseTask() = default;

  // What to poll for; a descriptor of -1: nothing.
  virtual pollfd Waits() const = 0;

  // When it wants a turn though nothing happened.
  virtual SteadyTime Due() const = 0;

  // `happened`: what poll() found, 0 for nothing. Never waits.
  virtual State Turn(SteadyTime now, short happened) = 0;
};

}  // namespace velt

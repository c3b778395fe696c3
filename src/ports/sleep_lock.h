// Keeps the machine from going to sleep for the few moments that a release takes.
#pragma once

#include "event/event.h"

namespace velt {

class SleepLock {
 public:
  virtual ~SleepLock() = default;

  // The machine is about to sleep; it waits some seconds for as long as the lock is held.
  Event<> goingToSleep;

  // Asks for the lock in the background. Where the system has none nothing happens.
  virtual void Hold() = 0;
  virtual void LetGo() = 0;
};

}  // namespace velt

// For systems and runs in which nothing has to be done before the machine sleeps.
#pragma once

#include "ports/sleep_lock.h"

namespace velt {

class NoSleepLock : public SleepLock {
 public:
  void Hold() override {}
  void LetGo() override {}
};

}  // namespace velt

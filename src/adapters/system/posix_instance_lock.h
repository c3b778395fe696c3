// One program for each user, by a locked file. The system frees the lock however the program ends.
#pragma once

#include <filesystem>

#include "ports/instance_lock.h"

namespace velt {

class PosixInstanceLock : public InstanceLock {
 public:
  // The file is made in the user's folder for running programs (XDG_RUNTIME_DIR), else in the cache
  // folder (XDG_CACHE_HOME, else .cache in the home folder).
  PosixInstanceLock();
  PosixInstanceLock(const PosixInstanceLock&) = delete;
  PosixInstanceLock& operator=(const PosixInstanceLock&) = delete;
  ~PosixInstanceLock() override;

  bool TryHold() override;

 private:
  std::filesystem::path folder_;  // empty when there is none
  int descriptor_ = -1;           // open while the lock is held
};

}  // namespace velt

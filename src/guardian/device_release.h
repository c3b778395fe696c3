// Releases a transmitter at an open device. The device is never opened here.
#pragma once

#include <string>

#include "guardian/release_task.h"
#include "ports/guardian.h"

namespace velt {

class DeviceRelease : public ReleaseTask {
 public:
  // The descriptor must stay open for as long as this lives. Released: the lines are lowered and
  // the bytes have left. Failed: the device is gone, or did not take them in time.
  DeviceRelease(const ReleaseRecipe& recipe, int descriptor, Milliseconds limit, SteadyTime now);

  pollfd Waits() const override;
  SteadyTime Due() const override { return due_; }
  State Turn(SteadyTime now, short happened) override;

 private:
  static constexpr Milliseconds kLookAgain{20};

  bool LowersLines() const;
  State WriteOn(SteadyTime now);

  const int descriptor_;
  const bool lowersLines_;
  const SteadyTime end_;
  std::string unwritten_;
  bool begun_ = false;
  SteadyTime due_;
};

}  // namespace velt

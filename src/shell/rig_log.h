// Writes into the log when the link to the rig changes: not more often than that.
#pragma once

#include <string>

#include "ports/log.h"
#include "rig/current_rig.h"

namespace velt {

class RigLog {
 public:
  RigLog(const CurrentRig& rig, Log& log) : rig_(rig), log_(log) {}

  // Called whenever the rig's status was shown.
  void Note() {
    if (!rig_.Exists()) return;
    const std::string status = "Rig " + std::to_string(rig_.Number()) + " is " +
                               (rig_.Linked() ? "" : "not ") + "linked: " + rig_->StatusStr();
    if (status == noted_) return;
    noted_ = status;
    log_.Write(rig_.Linked() ? LogLevel::Info : LogLevel::Warning, "velt.rig", status);
  }

 private:
  const CurrentRig& rig_;
  Log& log_;
  std::string noted_;
};

}  // namespace velt

// Tells when the link to the rig is lost or back: on the message line and in the log, not more
// often than that.
#pragma once

#include <optional>
#include <string>

#include "dialogs/message_line.h"
#include "ports/log.h"
#include "rig/current_rig.h"

namespace velt {

class LinkReporter {
 public:
  LinkReporter(const CurrentRig& rig, MessageLine& messages, Log& log)
      : rig_(rig), messages_(messages), log_(log) {}

  // Called whenever the rig's status was shown.
  void Note() {
    if (!rig_.Exists() || linked_ == rig_.Linked()) return;
    const bool first = !linked_;
    linked_ = rig_.Linked();
    const std::string rig = "Rig " + std::to_string(rig_.Number());
    const std::string text = *linked_ ? rig + " is linked." : rig + ": " + rig_->StatusStr() + ".";
    log_.Write(*linked_ ? LogLevel::Info : LogLevel::Warning, "velt.rig", text);
    if (!first) messages_.Show(text);
  }

 private:
  const CurrentRig& rig_;
  MessageLine& messages_;
  Log& log_;
  std::optional<bool> linked_;  // as told last
};

}  // namespace velt

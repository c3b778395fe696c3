// Tells how the link to the rig stands beyond the rig's own labels: the rig's type in the window's
// caption, and a lost or regained link on the message line and in the log, not more often than
// that.
#pragma once

#include <optional>
#include <string>

#include "dialogs/message_line.h"
#include "form/main_form.h"
#include "ports/log.h"
#include "rig/current_rig.h"
#include "rig/rig_display.h"

namespace velt {

class RigReporter {
 public:
  struct Parts {
    WindowFrame& window;
    RigDisplay& display;
    const CurrentRig& rig;
    MessageLine& messages;
    Log& log;
  };
  explicit RigReporter(const Parts& parts);

  // The caption without a rig.
  void SetBaseCaption(const std::string& caption);
  // Renews the caption.
  void ShowCaption();

 private:
  void Note();

  Parts parts_;
  std::string baseCaption_;
  std::optional<bool> linked_;  // as told last
  Connections connections_;
};

}  // namespace velt

// Shows in the main window how the link to the rig stands, at all times: a lamp, a few words, and
// in their tool tip which server it is and what is wrong with it.
#pragma once

#include "form/main_form.h"
#include "ports/omnirig.h"
#include "ports/scheduler.h"
#include "rig/omnirig_dialog.h"
#include "rig/omnirig_link.h"
#include "rig/rig_state.h"

namespace velt {

class LinkIndicator {
 public:
  struct Parts {
    RigControls& form;
    IOmniRigX& server;
    OmniRigLink& link;
    OmniRigDialog& dialog;
    const RigState& state;
    Scheduler& scheduler;
  };
  explicit LinkIndicator(const Parts& parts);

  void Refresh();

 private:
  Parts parts_;
  Scheduler::Handle countdown_;
  Connections connections_;
};

}  // namespace velt

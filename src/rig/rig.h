// The rig subsystem: its parts in order of dependence, joined to each other.
#pragma once

#include "form/main_form.h"
#include "form/omnirig_form.h"
#include "ports/omnirig.h"
#include "ports/prompts.h"
#include "ports/scheduler.h"
#include "rig/current_rig.h"
#include "rig/omnirig_dialog.h"
#include "rig/omnirig_link.h"
#include "rig/ptt.h"
#include "rig/ptt_guard.h"
#include "rig/rig_control.h"
#include "rig/rig_display.h"
#include "rig/rig_menus.h"
#include "rig/rig_state.h"

namespace velt {

class Rig {
 public:
  struct Ports {
    IOmniRigX& server;
    Prompts& prompts;
    Scheduler& scheduler;
  };

  Rig(RigControls& form, OmniRigForm& dialogForm, const Ports& ports,
      OmniRigLink::Questions questions, const ShowMessage& showMessage);

  RigState state;
  EngineState engine;
  CurrentRig current;
  RigDisplay display;
  PttGuard guard;
  RigControl control;
  Ptt ptt;
  OmniRigLink link;
  RigMenus menus;
  OmniRigDialog dialog;
};

}  // namespace velt

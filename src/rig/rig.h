// The rig subsystem: its parts in order of dependence.
#pragma once

#include "dialogs/message_line.h"
#include "dialogs/notices.h"
#include "form/main_form.h"
#include "form/omnirig_form.h"
#include "platform/on_top.h"
#include "ports/clock.h"
#include "ports/guardian.h"
#include "ports/omnirig.h"
#include "ports/prompts.h"
#include "ports/scheduler.h"
#include "ports/sleep_lock.h"
#include "rig/current_rig.h"
#include "rig/link_indicator.h"
#include "rig/omnirig_dialog.h"
#include "rig/omnirig_link.h"
#include "rig/ptt.h"
#include "rig/rig_control.h"
#include "rig/rig_display.h"
#include "rig/rig_menus.h"
#include "rig/rig_state.h"
#include "rig/transmit_guard.h"

namespace velt {

class Rig {
 public:
  struct Parts {
    RigControls& form;
    OmniRigForm& dialogForm;
    MessageLine& messages;
    Notices& notices;
    OnTop& onTop;
  };
  struct Ports {
    IOmniRigX& server;
    Prompts& prompts;
    Scheduler& scheduler;
    const Clock& clock;
    Guardian& guardian;
    SleepLock& sleepLock;
  };

  Rig(const Parts& parts, const Ports& ports, OmniRigLink::Questions questions);

  RigState state;
  EngineState engine;
  CurrentRig current;
  RigDisplay display;
  TransmitGuard guard;
  RigControl control;
  Ptt ptt;
  OmniRigLink link;
  OmniRigDialog dialog;
  LinkIndicator indicator;
  RigMenus menus;
};

}  // namespace velt

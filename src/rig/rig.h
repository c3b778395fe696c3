// The rig subsystem: its parts in order of dependence.
#pragma once

#include "dialogs/message_line.h"
#include "dialogs/notices.h"
#include "form/main_form.h"
#include "form/omnirig_form.h"
#include "platform/installation.h"
#include "platform/on_top.h"
#include "ports/clock.h"
#include "ports/engine_window.h"
#include "ports/files.h"
#include "ports/guardian.h"
#include "ports/omnirig.h"
#include "ports/prompts.h"
#include "ports/scheduler.h"
#include "ports/serial_port.h"
#include "ports/sleep_lock.h"
#include "rig/arduino_counter.h"
#include "rig/arduino_keyer.h"
#include "rig/arduino_port.h"
#include "rig/current_rig.h"
#include "rig/line_keyer.h"
#include "rig/omnirig_dialog.h"
#include "rig/omnirig_link.h"
#include "rig/ptt.h"
#include "rig/rig_control.h"
#include "rig/rig_display.h"
#include "rig/rig_menus.h"
#include "rig/rig_state.h"
#include "rig/serial_setup.h"
#include "rig/status_file.h"
#include "rig/status_poller.h"
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
    const Installation& installation;
  };
  struct Ports {
    IOmniRigX& server;
    Prompts& prompts;
    Scheduler& scheduler;
    const Clock& clock;
    Guardian& guardian;
    SleepLock& sleepLock;
    EngineWindow& engineWindow;
    SerialPort& serial;
    Files& files;
  };

  Rig(const Parts& parts, const Ports& ports, OmniRigLink::Questions questions);

  RigState state;
  EngineState engine;
  CurrentRig current;
  StatusFile statusFile;
  RigDisplay display;
  TransmitGuard guard;
  RigControl control;
  ArduinoPort arduino;
  LineKeyer lineKeyer;
  ArduinoKeyer arduinoKeyer;
  ArduinoCounter counter;
  Ptt ptt;
  StatusPoller poller;
  SerialSetup serial;
  OmniRigLink link;
  OmniRigDialog dialog;
  RigMenus menus;
};

}  // namespace velt

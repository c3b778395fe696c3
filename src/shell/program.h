// Puts the subsystems together and connects them; has no logic of its own.
#pragma once

#include <array>
#include <memory>

#include "audio/analysis_tick.h"
#include "audio/capture.h"
#include "audio/display_options.h"
#include "dialogs/display_colours.h"
#include "dialogs/message_line.h"
#include "dialogs/notices.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "platform/platform_helpers.h"
#include "platform/release_registry.h"
#include "platform/timer_driver.h"
#include "rig/rig_state.h"
#include "shell/appearance.h"
#include "shell/menus.h"
#include "shell/settings.h"
#include "shell/shutdown.h"
#include "shell/startup.h"
#include "shell/window_layout.h"

namespace velt {

// Everything of the outside that the program uses. All must outlive it.
struct ProgramPorts {
  Scheduler& scheduler;
  Clock& clock;
  AudioInput& audio;
  Files& files;
  SettingsStore& settings;
  SystemInfo& system;
  Prompts& prompts;
  Launcher& launcher;
  InstanceLock& lock;
  Log& log;
};

class Program {
 public:
  // `installation` tells the program's version and its program and engine folders.
  Program(ProgramPorts ports, Installation installation);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

 private:
  void Connect();

 public:
  Main form;
  Installation installation;
  RigState rigState;
  EngineState engineState;
  CarriedSettings carried;
  DisplayColours colours;
  ReleaseRegistry releases;
  PlatformHelpers platform;
  MessageLine messages;
  Notices notices;
  DisplayOptions display;
  Capture capture;
  AnalysisTick tick;
  Appearance appearance;
  WindowLayout layout;
  Settings settings;
  Startup startup;
  Shutdown shutdown;
  Menus menus;
  MenuOpener menuOpener;

 private:
  std::array<TimerDriver, 8> timers_;
};

}  // namespace velt

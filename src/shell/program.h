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
#include "form/omnirig_form.h"
#include "platform/installation.h"
#include "platform/platform_helpers.h"
#include "platform/timer_driver.h"
#include "presets/band_menu.h"
#include "presets/preset_table.h"
#include "rig/rig.h"
#include "shell/appearance.h"
#include "shell/link_reporter.h"
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
  IOmniRigX& server;
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
  // With `questions` Never the user is asked nothing while starting.
  Program(ProgramPorts ports, Installation installation, OmniRigLink::Questions questions);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

 private:
  void Connect();
  void ConnectRig();

 public:
  Main form;
  OmniRigForm catForm;
  Installation installation;
  CarriedSettings carried;
  DisplayColours colours;
  PlatformHelpers platform;
  MessageLine messages;
  Notices notices;
  Rig rig;
  PresetTable presets;
  BandMenu bandMenu;
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
  LinkReporter linkReporter_;
  std::array<TimerDriver, 8> timers_;
};

}  // namespace velt

// The sequence that runs when the main window is created.
#pragma once

#include "audio/capture.h"
#include "display/main_display.h"
#include "engine/engine_process.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "platform/platform_helpers.h"
#include "ports/files.h"
#include "ports/instance_lock.h"
#include "ports/log.h"
#include "ports/scheduler.h"
#include "presets/preset_files.h"
#include "recording/recorder.h"
#include "rig/omnirig_link.h"
#include "rig/rig_display.h"
#include "rig/serial_setup.h"
#include "shell/rig_reporter.h"
#include "shell/run_setup.h"
#include "shell/settings.h"
#include "shell/window_layout.h"

namespace velt {

class Startup {
 public:
  enum class Result {
    Running,
    AnotherInstance,  // ends silently
    SettingsReset,    // the message box is to be shown, then the program ends
  };
  struct Parts {
    Main& form;
    const RunSetup& setup;
    Installation& installation;
    PlatformHelpers& platform;
    Settings& settings;
    CarriedSettings& carried;
    MainDisplay& display;
    Capture& capture;
    WindowLayout& layout;
    PresetFiles& presetFiles;
    OmniRigLink& link;
    RigDisplay& rigDisplay;
    EngineProcess& engine;
    Recorder& recorder;
    SerialSetup& serial;
    RigReporter& reporter;
  };
  struct Ports {
    Files& files;
    InstanceLock& lock;
    Scheduler& scheduler;
    Log& log;
  };
  Startup(const Parts& parts, const Ports& ports);

  // The rig is off line at the end of the sequence: the engine is told, and the counter may take
  // the rig's place.
  Event<> rigOffLine;

  // Checks for the reset, loads everything and lays the window out; what follows a yield runs in
  // later turns of the loop.
  Result Run();

 private:
  void Form_Load();
  void MakeFolders();
  void PrepareEngine();
  void ReadSerialSetup();
  void StartAnalyserIfWanted();
  void LinkRig();
  void RigAnswered(bool online);
  void ShowExpander();

  Parts parts_;
  Ports ports_;
  Scheduler::Handle next_;
};

}  // namespace velt

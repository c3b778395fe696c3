// The sequence that runs when the main window is created.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "audio/capture.h"
#include "audio/display_options.h"
#include "dialogs/display_colours.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "platform/platform_helpers.h"
#include "ports/files.h"
#include "ports/instance_lock.h"
#include "ports/log.h"
#include "ports/scheduler.h"
#include "shell/settings.h"
#include "shell/window_layout.h"

namespace velt {

// Steps that other parts of the program fill; one that is not set does nothing.
struct StartupSteps {
  std::function<void()> loadPresets;
  std::function<void()> mnurunzoka_Click;
  std::function<void()> ReadRS232;
  // Opens the rig's link; `online` runs whenever it stands, however late, `offLine` when it could
  // not be started.
  std::function<void(std::function<void()> online, std::function<void()> offLine)> StartOmniRig;
  std::function<void()> tmrStatus_Timer;
  std::function<void()> ShowRigParams;
  std::function<std::string()> rigType;
  std::function<void()> writeOffLineStatus;
  // The frequency comes from the counter while the rig is off line.
  std::function<void()> offerFrequencyCounter;
};

// What the command line says about this run.
struct RunOptions {
  bool resetSettings = false;
  bool exemptFromSingleInstance = false;
  bool startAnalyser = false;
  std::filesystem::path dataFolder;  // empty: below the home folder
};

class Startup {
 public:
  enum class Result {
    Running,
    AnotherInstance,  // ends silently
    SettingsReset,    // the message box is to be shown, then the program ends
  };
  struct Parts {
    Main& form;
    Installation& installation;
    PlatformHelpers& platform;
    Files& files;
    InstanceLock& lock;
    Scheduler& scheduler;
    Log& log;
    Settings& settings;
    CarriedSettings& carried;
    DisplayOptions& display;
    DisplayColours& colours;
    Capture& capture;
    WindowLayout& layout;
  };
  explicit Startup(Parts parts);

  StartupSteps steps;

  // Checks for the reset, loads everything and lays the window out; what follows a yield runs in
  // later turns of the loop.
  Result Run(const RunOptions& options);

  // Puts the rig's type into the caption, once the rig was on line.
  void ShowRigInCaption();

 private:
  void Form_Load(const RunOptions& options);
  void ApplySavedSize();
  void MakeFolders();
  void PrepareEngine();
  void StartAnalyserIfWanted(const RunOptions& options);
  void LinkRig();
  void RigIsOnline();
  void ShowExpander();
  void RigIsOffLine();

  Parts p_;
  std::string baseCaption_;
  bool rigOnline_ = false;
  bool sizeApplied_ = false;
  Scheduler::Handle next_;
};

}  // namespace velt

// The sequence that runs when the main window is closed, and the immediate end.
#pragma once

#include <functional>

#include "audio/capture.h"
#include "form/main_form.h"
#include "ports/prompts.h"
#include "ports/scheduler.h"
#include "rig/ptt_guard.h"
#include "shell/settings.h"
#include "shell/window_layout.h"

namespace velt {

// Steps that other parts of the program fill; one that is not set does nothing.
struct ShutdownSteps {
  std::function<void()> closeDialogs;
  // Undoes a shift made for transmitting; true when there was one, which needs time to leave.
  std::function<bool()> restoreRigFrequency;
  std::function<void()> StopOmniRig;
  std::function<void()> SaveExpandedPresets;
  std::function<void()> mnuclosezoka_Click;
  std::function<void()> WriteStatusRX;   // with the rig's own frequency
  std::function<void()> writeOffStatus;  // with the state "OFF"
  std::function<void()> closeSerialPort;
};

class Shutdown {
 public:
  struct Parts {
    Main& form;
    Capture& capture;
    Settings& settings;
    WindowLayout& layout;
    PttGuard& guard;
    Prompts& prompts;
    Scheduler& scheduler;
  };
  explicit Shutdown(Parts parts);

  ShutdownSteps steps;
  // Asks the loop to end; called once.
  std::function<void()> endProgram;

  // The window is being closed, or the desktop's session ends. Sets `cancel` when the window stays
  // for one more tick. A second call while shutting down does nothing but cancel.
  void Form_Unload(bool& cancel);

  // Ends at once: nothing is saved, the engine and the rig's link are left alone. What this
  // program keyed is released all the same.
  void mnucloseme_Click();

  void QuitTimer_Timer();

  bool Quitting() const { return quitting_; }

 private:
  void Unload(bool& cancel);
  void End();

  static constexpr Milliseconds kRestoreTime{200};
  Parts p_;
  bool unloading_ = false;
  bool quitting_ = false;
  bool ended_ = false;
  Scheduler::Handle restored_;
  Connections connections_;
};

}  // namespace velt

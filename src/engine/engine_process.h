// The engine as a program: started, brought to the front, watched and closed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "dialogs/message_window.h"
#include "dialogs/notices.h"
#include "engine/key_runner.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "ports/engine_window.h"
#include "ports/launcher.h"
#include "ports/log.h"
#include "ports/prompts.h"
#include "rig/rig_state.h"

namespace velt {

class EngineProcess {
 public:
  // How long after a start its window is waited for.
  static constexpr Milliseconds kStartLimit{60'000};

  struct Parts {
    EngineControls& form;
    RigControls& rig;
    const Installation& installation;
    EngineState& engine;
    MessageWindow& messageWindow;
    Notices& notices;
    KeyRunner& keys;
  };
  struct Ports {
    EngineWindow& window;
    Launcher& launcher;
    Prompts& prompts;
    Scheduler& scheduler;
    Log& log;
  };
  EngineProcess(const Parts& parts, const Ports& ports);

  // The engine's window; 0 when it is not there or no engine is installed.
  uint32_t DetectVELTWindow() const;
  uint32_t DetectProgWindow(const std::string& title) const;

  // To be called when it is known whether an engine is installed. Where it is missing in the
  // folder that was named, or its window cannot be controlled, the user is told so, once in a run.
  void Begin();

  // Starts the engine, or brings it to the front. While a start is shown a second one is not made.
  void mnurunzoka_Click();
  void mnuclosezoka_Click();
  void Timer3_Timer();
  void tmrCheckZOKA_Timer();

  // An engine that is not there any more is no news while the program ends.
  bool quitting = false;

 private:
  void Warn(const std::string& problem);  // in the window and in the log
  void Start();
  void Answered(Launcher::Start start);
  void EndStart();
  void Appeared();
  void Vanished();

  Parts parts_;
  Ports ports_;
  std::optional<SteadyTime> started_;  // and its window is waited for
  bool present_ = false;               // its window, when it was looked for last
  std::shared_ptr<char> alive_ = std::make_shared<char>();
  Connections connections_;
};

}  // namespace velt

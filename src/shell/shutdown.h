// The sequence that runs when the main window is closed, and the immediate end.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "audio/capture.h"
#include "display/color_dialog.h"
#include "engine/engine_process.h"
#include "form/main_form.h"
#include "ports/prompts.h"
#include "ports/scheduler.h"
#include "presets/band_dialog.h"
#include "presets/preset_files.h"
#include "recording/player.h"
#include "recording/recorder.h"
#include "rig/rig.h"
#include "shell/settings.h"
#include "shell/setup_dialog.h"
#include "shell/window_layout.h"

namespace velt {

class Shutdown {
 public:
  struct Parts {
    Main& form;
    Capture& capture;
    ColorDialog& colorDialog;
    BandDialog& bandDialog;
    Player& player;
    SetupDialog& setupDialog;
    Settings& settings;
    WindowLayout& layout;
    PresetFiles& presetFiles;
    Recorder& recorder;
    Rig& rig;
    EngineProcess& engine;
  };
  struct Ports {
    Prompts& prompts;
    Scheduler& scheduler;
  };
  Shutdown(const Parts& parts, const Ports& ports);

  // The engine is told the rig's last frequency in Hz, or that the rig is off.
  Event<int32_t> lastFrequency;
  Event<> rigOff;
  // The loop is to end; once.
  Event<> ended;

  enum class ClosedBy {
    User,    // there is somebody who can be asked
    System,  // a signal, the end of the session or of a run without a window
  };

  // The program is to end. Sets `cancel` when the window stays for one more tick, or while the user
  // is asked what to do about settings or presets that could not be saved. A second call while
  // shutting down does nothing but cancel; one by the system answers that question.
  void Form_Unload(bool& cancel, ClosedBy closedBy);

  // Ends at once: nothing is saved, the engine and the rig's link are left alone. What this
  // program keyed is released all the same.
  void mnucloseme_Click();

  void QuitTimer_Timer();

  bool Quitting() const { return quitting_; }

 private:
  using Step = void (Shutdown::*)(bool& cancel);
  // What every end begins with: off the air and back on the rig's own frequency, nothing asked,
  // nothing recorded.
  void PutAway();
  // True when the rig has still to answer what was written; `then` is called when it has, or when
  // it had time enough.
  bool WritesFirst(const std::function<void()>& then);
  void LookAtWrites(const std::function<void()>& then);
  void SaveSettings(bool& cancel);
  void StopLink(bool& cancel);
  void SavePresets(bool& cancel);
  void Unload(bool& cancel);
  // Goes on, or asks the user whether to try again when something could not be saved.
  void GoOn(const std::string& what, int error, Step again, Step next, bool& cancel);
  void End();

  // For the release and all that is written at the end together.
  static constexpr Milliseconds kWriteTime{500};
  static constexpr Milliseconds kLookEvery{10};
  Parts parts_;
  Ports ports_;
  ClosedBy closedBy_ = ClosedBy::User;
  bool unloading_ = false;
  Step unlessAnswered_ = nullptr;  // while the user is asked: what follows without an answer
  bool quitting_ = false;
  bool ended_ = false;
  SteadyTime writeUntil_;
  Scheduler::Handle written_;
  std::shared_ptr<char> alive_ = std::make_shared<char>();
  Connections connections_;
};

}  // namespace velt

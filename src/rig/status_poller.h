// Reads the engine's files round by round and carries out what they ask: the mode and the passband
// that are shown, the calibration, a frequency to tune to, the transmit state, a mode for the rig.
// Each change acts once.
#pragma once

#include <cstdint>
#include <string>

#include "form/main_form.h"
#include "platform/installation.h"
#include "platform/watched_file.h"
#include "ports/clock.h"
#include "ports/engine_window.h"
#include "ports/files.h"
#include "ports/scheduler.h"
#include "rig/arduino_counter.h"
#include "rig/engine_files.h"
#include "rig/engine_wish.h"
#include "rig/ptt.h"
#include "rig/rig_control.h"
#include "rig/rig_state.h"
#include "rig/status_file.h"
#include "rig/transmit_guard.h"

namespace velt {

class StatusPoller {
 public:
  struct Parts {
    RigControls& form;
    const Installation& installation;
    RigState& state;
    EngineState& engine;
    RigControl& control;
    Ptt& ptt;
    TransmitGuard& guard;
    StatusFile& statusFile;
    const ArduinoCounter& counter;
  };
  struct Ports {
    Files& files;
    EngineWindow& window;
    const Clock& clock;
    Scheduler& scheduler;
  };
  StatusPoller(const Parts& parts, const Ports& ports);

  // What the display draws of the engine changed: scale, passband, whether it receives.
  Event<> displayChanged;

  // One round. Without an engine it ends the rounds.
  void tmrStatus_Timer();

 private:
  void Round();
  void FollowFolder();
  void ReadStatus();
  void ShowMode();
  void FollowCalibration();
  void MeetRequest(WatchedFile& file, bool isNew);
  void CarryOut(EngineWish::Change change);
  void FollowTransmitterMode();
  void FollowLockedMode();
  void FollowInversion();
  bool Locked() const;

  Parts parts_;
  Ports ports_;
  WatchedFile statusFile_, calibrationFile_, transmitFile_, siblingFile_;
  uint32_t window_ = 0;

  EngineStatus read_;    // as the file says
  EngineStatus status_;  // as it holds: without the window there is no mode
  Calibrations calibrations_;
  bool calibrated_ = false;  // they were read
  std::string transmitState_;
  EngineWish wish_;

  // Of the round before.
  std::string layoutKey_;
  std::string transmitterMode_;
  std::string lockedMode_;
  std::string inverted_;
  Scheduler::Handle secondLook_;
  Connections connections_;
};

}  // namespace velt

// Switches the transceiver between transmit and receive by the PTT method.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "form/main_form.h"
#include "rig/current_rig.h"
#include "rig/ptt_guard.h"
#include "rig/rig_control.h"
#include "rig/rig_display.h"
#include "rig/rig_state.h"

namespace velt {

class Ptt {
 public:
  Ptt(RigControls& form, RigState& state, const CurrentRig& rig, RigControl& control,
      RigDisplay& display, PttGuard& guard);

  // Keys by the methods other than "NONE"; takes true for transmit.
  std::function<void(bool transmit)> keyBySerialPort;

  // With method "NONE" the rig is keyed over its link and moved to the frequency shown. Refused
  // with a message while there is no link to the rig.
  void PTT_ON();

  // With method "NONE" the rig is released and 1.1 s later moved back to where it was.
  void PTT_OFF();

  // Finishes a transmission whose release has been sent already, or that somebody else ended.
  void TransmissionEnded(int32_t rigNumber);

  // Ends what is going on with the rig in use before another one is taken or its link is closed.
  void LeaveRig(bool closing);

 private:
  struct Shift {
    int16_t kHz;
    int16_t vfo;
  };

  bool KeyByLink();
  void ReleaseByLink();
  void BackToReceive();
  void SelectButton(int32_t index);

  RigControls& form_;
  RigState& state_;
  const CurrentRig& rig_;
  RigControl& control_;
  RigDisplay& display_;
  PttGuard& guard_;
  // What was moved at keying is what is moved back, whatever the settings became meanwhile.
  std::optional<Shift> keyedWith_;
};

}  // namespace velt

// Switches the transceiver between transmit and receive by the PTT method, for whoever wants it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "dialogs/message_line.h"
#include "dialogs/notices.h"
#include "form/main_form.h"
#include "rig/arduino_keyer.h"
#include "rig/cat_keyer.h"
#include "rig/current_rig.h"
#include "rig/line_keyer.h"
#include "rig/rig_control.h"
#include "rig/rig_display.h"
#include "rig/rig_state.h"
#include "rig/transmit_guard.h"

namespace velt {

class Ptt {
 public:
  struct Parts {
    RigControls& form;
    const RigState& state;
    const CurrentRig& rig;
    RigControl& control;
    RigDisplay& display;
    TransmitGuard& guard;
    MessageLine& messages;
    Notices& notices;
    IOmniRigX& server;
    LineKeyer& lines;
    ArduinoKeyer& arduino;
  };
  explicit Ptt(const Parts& parts);

  // With method "NONE", and for the player always, the rig is keyed over its link and moved to the
  // frequency shown; a rig that does not take that frequency is released, which is told. With "COM"
  // by the lines of the serial port, with "ARDUINO" by a letter to it, and lblTRXMode stays as it
  // is. Refused with a message where it cannot be keyed so.
  void PTT_ON(TransmitOwner owner = TransmitOwner::Operator);

  // The operator's receive always acts: nobody's transmission goes on, and the rig in use is sent a
  // release whoever keyed it. Another owner ends only what it wanted itself. What was keyed is
  // released the way it was keyed, whatever the method is by now. A rig that was moved for
  // transmitting is moved back 1.1 s later.
  void PTT_OFF(TransmitOwner owner = TransmitOwner::Operator);

  // Ends what is going on with the rig in use before another one is taken or its link is closed.
  void LeaveRig(bool closing);

  // The server of rig 1 or 2 is about to be another one.
  void LeaveServer(int32_t rigNumber);

  // The serial port is about to be another one, or keyed by in another way.
  void LeaveSerialPort();

 private:
  struct Shift {
    int16_t kHz;
    int16_t vfo;
  };

  CatKeyer* RigInUse();
  Keyer* KeyerFor(TransmitOwner owner);
  bool IsByLink(const Keyer& keyer) const;
  void ReleaseByOperator();
  bool KeyByLink(TransmitOwner owner, Keyer* keyer);
  void TransmissionEnded(const Keyer& keyer, TransmitGuard::Cause cause);
  void WriteRefused(int32_t rigNumber, const RefusedWrite& write);
  void BackToReceive();
  void SelectButton(int32_t index);

  Parts parts_;
  std::array<CatKeyer, 2> cat_;
  // What was moved at keying is what is moved back, whatever the settings became meanwhile.
  std::optional<Shift> keyedWith_;
  Connections connections_;
};

}  // namespace velt

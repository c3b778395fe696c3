// Writes the rig's frequency and mode. Nothing is sent while there is no rig object or while
// lblFrequencyExpand shows "N/A"; while the link to the rig is lost, and for frequencies outside
// 10 kHz to 2 GHz, the write is refused with a message.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "dialogs/message_line.h"
#include "form/main_form.h"
#include "rig/current_rig.h"
#include "rig/frequency_restore.h"
#include "rig/rig_display.h"
#include "rig/rig_state.h"

namespace velt {

class RigControl {
 public:
  static constexpr int32_t kLowestHz = 10'000;
  static constexpr int32_t kHighestHz = 2'000'000'000;

  struct Parts {
    RigControls& form;
    RigState& state;
    const CurrentRig& rig;
    RigDisplay& display;
    MessageLine& messages;
    Scheduler& scheduler;
  };
  explicit RigControl(const Parts& parts);

  // Writes frequencyHz less the rig's offset. `vfo`: 0 the current frequency, 1 VFO A, 2 VFO B,
  // 3 VFO B and then VFO A; any other writes nothing.
  void SetTRXFrequency(int32_t frequencyHz, int16_t vfo = 0);

  // Writes the current frequency as it is, without the rig's offset. Says so on the message line.
  void TuneTo(double frequencyHz);

  // Like SetTRXFrequency, in kilohertz, for what a user asked for: what cannot be sent is told.
  // What does not fit into 32 bits of hertz is as much out of range as the largest number that
  // does.
  void SetKilohertz(double kilohertz, int16_t vfo);

  // The kilohertz that a user has typed, as TypedKilohertz reads them; empty, and told, when it is
  // no number above 10.
  std::optional<double> FrequencyByHand(const std::string& typed) const;
  // The same, and sets it. Returns what was set or refused as out of range.
  std::optional<double> SetFrequencyByHand(const std::string& typed, int16_t vfo);

  // Moves the current frequency by a step, from where it is or is about to be.
  void StepBy(int32_t stepHz);
  // The same, and shows it; nothing while no frequency above 0 is shown.
  void Step(int32_t stepHz);

  // Moves the rig to the frequency shown (shiftTheRig) or, 1.1 s later, back to where it was.
  // Nothing when shiftKHz is 0, nor back when it was not moved. Moving it again before it is back
  // keeps both places, unless it was tuned meanwhile: from then on it belongs where it stands.
  void SetTRXShift(int16_t shiftKHz, bool shiftTheRig, int16_t vfo = 0);

  // Moves the rig back at once if it is still shifted.
  void RestoreNow();

  // Sends a mode by its text; an unknown one sends nothing. An empty text stands for the mode in
  // lblMode, which goes out with the opposite sideband sense. Returns the text that was used.
  std::string SetModulationMode(const std::string& modulatie = {});

  // Sends a mode by its number, PM_..., as it is.
  void SendMode(int32_t mode);

  // Tells the user that the rig did not take what was written. True when this was the move to the
  // frequency shown: what is transmitted now is somewhere else.
  bool TellRefusal(const RefusedWrite& write) const;

  // Tells the user when a write cannot reach the rig now.
  bool RefusedWithoutLink() const;

 private:
  struct Shift {
    int16_t vfo;
    int32_t frequencyHz;
  };

  void TellNoLink() const;
  bool Blocked() const;
  bool Tune(int64_t frequencyHz, int16_t vfo);
  void ShiftAway(int16_t vfo);
  bool MoveBack();
  bool IsMovingBack() const { return shift_ && restore_.Armed(); }
  bool StandsWhereItWasShifted() const;
  void Write(int32_t frequencyHz, int16_t vfo);

  Parts parts_;
  FrequencyRestore restore_;
  std::optional<Shift> shift_;  // the rig stands there instead of at the saved frequency
};

}  // namespace velt

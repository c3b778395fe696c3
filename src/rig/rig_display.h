// Shows the rig picture: frequency, mode and transmit state in the labels of the main window.
#pragma once

#include <cstdint>

#include "form/main_form.h"
#include "rig/current_rig.h"
#include "rig/rig_state.h"
#include "rig/status_file.h"

namespace velt {

class RigDisplay {
 public:
  // Of lblFrequency while nothing is known of a rig.
  static constexpr const char* kNoRigToolTip =
      "Transceiver Frequency or set the frequency in kc (click for options)";

  RigDisplay(RigControls& form, RigState& state, const EngineState& engine, const CurrentRig& rig,
             StatusFile& statusFile);

  // The rig's status was shown; its type may be another one now.
  Event<> statusShown;

  // Refreshes the labels, RealRigFrequency and the scale's anchor from the rig, and tells the
  // engine where it is. Nothing without a rig object.
  void ShowRigParams();

  // The rig's frequency, or a counter's in its place; the scale's anchor follows.
  void TakeFrequency(int32_t frequencyHz);

  // Puts the rig's status into the tool tip of lblFrequency and marks the labels as stale or not.
  // Nothing without a rig object.
  void ShowRigStatus();

  void MarkStale(bool stale);

  // There is no link any more: nothing is known of a rig.
  void ShowOffLine();

 private:
  void lblFrequency_Change();
  void FollowShownFrequency(int32_t frequencyHz);
  std::string FrequencyToShow(int32_t frequencyHz);
  void ShowMode();

  RigControls& form_;
  RigState& state_;
  const EngineState& engine_;
  const CurrentRig& rig_;
  StatusFile& statusFile_;
  Connections connections_;
};

}  // namespace velt

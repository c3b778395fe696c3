// What is known of the rig. A value that was written is shown at once and stays until the rig has
// had time to report it: the echoes of the old value that still arrive do not bring it back.
#pragma once

#include <cstdint>
#include <string_view>

#include "adapters/rigctld/reply_reader.h"
#include "adapters/rigctld/rig_command.h"
#include "ports/omnirig.h"

namespace velt {

// For so long after the answer to a write, what is reported otherwise is taken for the old value.
inline constexpr Milliseconds kSettling{1000};

class SettledValue {
 public:
  int32_t Value() const { return value_; }

  void Written(int32_t value);
  // The server has answered the write of this value; only the newest counts.
  void Acknowledged(int32_t value, bool accepted, SteadyTime now);
  void Reported(int32_t value, SteadyTime now);
  // The next report holds, whatever was written.
  void Unsettle();

 private:
  int32_t value_ = 0;
  int32_t reported_ = 0;
  bool waiting_ = false;  // written, not answered yet
  SteadyTime settled_;    // from then on reports are believed
};

// The transmit state is never what was asked for but what the rig reports. For the display, late
// reports of "transmitting" from before a release are left out once it was seen to receive.
class TransmitState {
 public:
  TxReport Told() const { return told_; }
  bool Shown() const { return shown_; }
  void ReleaseAsked() { waiting_ = true; }
  void ReleaseAnswered(SteadyTime now);
  void KeyAsked();
  void Reported(bool transmitting, SteadyTime now);
  // What was told does not hold any more; the last state stays shown.
  void Forget();

 private:
  TxReport told_ = TxReport::Untold;
  bool shown_ = false;
  bool waiting_ = false;
  SteadyTime settled_;
};

class RigPicture {
 public:
  // What the rig interface tells, for comparison.
  struct Values {
    int32_t freq = 0;
    int32_t freqA = 0;
    int32_t freqB = 0;
    int32_t mode = 0;
    bool split = false;
    TxReport told = TxReport::Untold;
    int32_t txFreq = 0;  // 0 while receiving

    // The PM_... bits of what differs; values as they are in *this.
    int32_t ChangesFrom(const Values& before) const;
  };
  Values Now() const;

  void Written(RigProperty property, int32_t value);
  void Acknowledged(RigProperty property, int32_t value, bool accepted, SteadyTime now);
  void ReleaseAsked() { transmit_.ReleaseAsked(); }
  void KeyAsked() { transmit_.KeyAsked(); }

  // The good reply to a read. What is no frequency counts as 0; another unreadable value changes
  // nothing.
  void Reported(CommandKind kind, const RigReply& reply, SteadyTime now);
  // The rig does not tell whether it transmits.
  void ForgetTransmit() { transmit_.Forget(); }
  // The link broke: nothing that was written is waited for.
  void Unsettle();

 private:
  SettledValue* OfCurrentVfo();
  void SetVfo(std::string_view name);

  SettledValue freq_, freqA_, freqB_, mode_;
  TransmitState transmit_;
  char vfo_ = 0;  // 'A', 'B', 0 unknown
  bool split_ = false;
  int32_t splitFreq_ = 0;
};

}  // namespace velt

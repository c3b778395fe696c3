// What is known of the rig. A value that was written is shown at once and stays until the rig has
// had time to report it: the echoes of the old value that still arrive do not bring it back.
#pragma once

#include <cstdint>
#include <string_view>

#include "adapters/rigctld/reply_reader.h"
#include "adapters/rigctld/rig_command.h"

namespace velt {

// So many reports after a write are not believed when they differ from it.
inline constexpr int32_t kSettlingReports = 3;

class SettledValue {
 public:
  int32_t Value() const { return value_; }

  void Written(int32_t value);
  // The server has answered the write of this value; only the newest counts.
  void Acknowledged(int32_t value, bool accepted);
  void Reported(int32_t value);
  // The next report holds, whatever was written.
  void Unsettle();

 private:
  int32_t value_ = 0;
  int32_t reported_ = 0;
  bool waiting_ = false;  // written, not answered yet
  int32_t doubtful_ = 0;  // reports that are still not believed
};

// The transmit state is never what was asked for but what the rig reports. After a release, late
// reports of "transmitting" do not turn it back once it was seen to receive.
class TransmitState {
 public:
  bool Transmitting() const { return transmitting_; }
  void ReleaseAsked();
  void ReleaseAnswered();
  void KeyAsked();
  void Reported(bool transmitting);

 private:
  bool transmitting_ = false;
  bool waiting_ = false;
  int32_t doubtful_ = 0;
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
    bool transmitting = false;
    int32_t txFreq = 0;  // 0 while receiving

    // The PM_... bits of what differs; values as they are in *this.
    int32_t ChangesFrom(const Values& before) const;
  };
  Values Now() const;

  void Written(RigProperty property, int32_t value);
  void Acknowledged(RigProperty property, int32_t value, bool accepted);
  void ReleaseAsked() { transmit_.ReleaseAsked(); }
  void KeyAsked() { transmit_.KeyAsked(); }

  // The good reply to a read; unreadable values change nothing.
  void Reported(CommandKind kind, const RigReply& reply);
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

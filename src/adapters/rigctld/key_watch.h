// Whether the transmitter is on because of us: from the key command until the rig was seen to
// receive again. Somebody else's transmission is none of ours to end.
#pragma once

namespace velt {

class KeyWatch {
 public:
  bool Keyed() const { return keyed_; }

  void KeySent();
  void KeyAnswered(bool refused);
  // `reportable` is false when the rig cannot tell whether it transmits.
  void ReleaseAnswered(bool accepted, bool reportable);
  void Reported(bool transmitting);

 private:
  bool keyed_ = false;
  bool seen_ = false;      // reported as transmitting since
  bool released_ = false;  // the release was taken
};

}  // namespace velt

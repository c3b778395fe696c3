#include "adapters/rigctld/key_watch.h"

namespace velt {

void KeyWatch::KeySent() {
  if (!keyed_) seen_ = false;
  keyed_ = true;
  released_ = false;
}

void KeyWatch::KeyAnswered(bool refused) {
  if (refused && !seen_) keyed_ = false;
}

void KeyWatch::ReleaseAnswered(bool accepted, bool reportable) {
  if (!accepted) return;
  released_ = true;
  if (!reportable) keyed_ = false;
}

void KeyWatch::Reported(bool transmitting) {
  if (transmitting) {
    seen_ = true;
  } else if (seen_ || released_) {
    // A rig that was just keyed may still report "receiving" once.
    keyed_ = false;
  }
}

}  // namespace velt

// Keys one transmitter one way: over the CAT link of a rig, by lines of a serial port, ...
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "event/event.h"
#include "ports/guardian.h"
#include "ports/omnirig.h"
#include "ports/scheduler.h"

namespace velt {

class Keyer {
 public:
  struct Report {
    bool linked = false;     // the transmitter answers
    bool reachable = false;  // commands can be sent, answered or not
    TxReport transmitter = TxReport::Untold;
    bool releaseAccepted = false;  // for transmitters that cannot tell whether they transmit
  };

  virtual ~Keyer() = default;

  // After Key: the transmitter did not take it. Never from within a call.
  Event<> refused;
  // What Look() tells may be something else now.
  Event<> heard;

  // To be called before the recipe is asked for: what has to stand for it, such as an open port, is
  // made, and nothing is keyed by it. Empty, or why it cannot be keyed.
  virtual std::string Prepare() { return {}; }
  // Takes Prepare back: the key does not follow.
  virtual void GiveUp() {}

  // False when it is refused at once; nothing was sent then.
  virtual bool Key() = 0;
  // Without a connection it goes first once there is one again.
  virtual void Release() = 0;
  // For the end of the program: as directly as possible, waiting at most `limit` for it to leave.
  virtual void ReleaseNow(Milliseconds limit) = 0;

  virtual Report Look() const = 0;
  // What the guardian needs; empty when it cannot be keyed now.
  virtual std::optional<ReleaseRecipe> Recipe() const = 0;
  // Recipes are good for the connection that they were asked for at.
  virtual uint32_t Connection() const { return 0; }

  // Whether a lost link is taken up again by itself.
  virtual bool ComesBack() const { return true; }
};

}  // namespace velt

// The guardian: a second process that releases what this program keyed when the program itself
// cannot do it any more. It knows recipes, no protocols. No call waits for it.
#pragma once

#include <cstdint>
#include <string>

#include "event/event.h"

namespace velt {

// How one transmitter is released and seen to be released. Either a server that is reached by a
// numeric address (no name is ever looked up), or a device that this program has open, which is
// released and not asked.
struct ReleaseRecipe {
  std::string host = {};  // "127.0.0.1", "::1", "fe80::1%eth0"; empty: the device
  uint16_t port = 0;
  int descriptor = -1;       // of the open device; duplicates keep it open until Forget
  bool lowersLines = false;  // of the device: DTR and RTS are lowered, before anything is written

  // One command each, with one answer of lines ended by '\n'.
  std::string release = {};    // bytes that release; may be empty where lowered lines do
  std::string ask = {};        // bytes that ask whether it transmits; empty: it cannot be asked
  std::string answerEnd = {};  // how the last line of each answer begins ("RPRT "); empty: none
  std::string accepted = {};   // the last line of the answer to an accepted release ("RPRT 0")
  std::string tells = {};      // how the line with the transmit state begins ("PTT: ")
  std::string receives = {};   // that line when it receives ("PTT: 0"); any other state transmits
};

struct GuardianNews {
  enum class Kind {
    // This program stood still while it held; everything held was released. Its tickets are spent:
    // Hold anew before keying again.
    ReleasedInSilence,
    FollowUpFailed,  // what was handed over by Follow could not be seen to receive in 10 s
    FollowUpDone,    // it was, or a later Hold of the same transmitter took it over
    Back,            // a guardian is there again after a time without; what was held is held again
  };
  Kind kind = Kind::ReleasedInSilence;
  uint32_t ticket = 0;  // of the follow-ups
};

class Guardian {
 public:
  virtual ~Guardian() = default;

  // Raised on the window's thread, never from within a call.
  Event<const GuardianNews&> told;

  // To be called before the key goes out. The transmitter is released when this program ends in
  // whatever way before Forget, or is silent for 5 s. Returns a ticket, or 0 when there is no
  // guardian (none yet, at the start of a run) or the recipe has no use: then nothing may be keyed.
  virtual uint32_t Hold(const ReleaseRecipe& recipe) = 0;

  // It was seen to receive, or is none of ours any more.
  virtual void Forget(uint32_t ticket) = 0;

  // Hands it over: the guardian releases it now, follows it up for 10 s and then forgets it, with
  // news of how it went.
  virtual void Follow(uint32_t ticket) = 0;

  // The window's loop is alive; to be called at least once a second while something is held. It
  // counts only while the display answers, too.
  virtual void Beat() = 0;
};

}  // namespace velt

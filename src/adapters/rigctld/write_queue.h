// The writes that wait for the server, in the order in which they may go. A release goes first, a
// newer value replaces a waiting one of the same property, and the commands that write a VFO which
// is not the current one stay together.
#pragma once

#include <deque>
#include <optional>
#include <string>

#include "adapters/rigctld/reply_reader.h"
#include "adapters/rigctld/rig_command.h"

namespace velt {

class WriteQueue {
 public:
  // What became of a write.
  struct Outcome {
    RigProperty property;
    int32_t value;
    bool accepted;
  };

  // A frequency in Hz or a mode, already checked.
  void Put(RigProperty property, int32_t value);
  void PutKey();
  // Removes a key that waits. Goes even while another release is under way.
  void PutRelease();
  void DropKey() { Remove(RigProperty::Transmit); }
  // Something has not been sent yet, or is not complete.
  bool Waits() const { return releaseWaits_ || vfoWrite_ || !waiting_.empty(); }
  // A write of it, or a key, has not been sent yet.
  bool Waits(RigProperty property) const;
  bool ReleaseWaits() const { return releaseWaits_; }
  // The last release that was answered was accepted, and no key and no first release of another
  // series was put since.
  bool ReleaseAccepted() const { return releaseAccepted_; }

  // The next command to send; empty when nothing waits. Not while one of ours is under way.
  std::optional<RigCommand> Next();

  // A release was sent past the queue; its reply comes too.
  void ReleaseSentAhead();

  // What brings the rig back to the VFO that a write has left; empty when it was not left.
  std::optional<RigCommand> WayBack() const;

  // The reply to a command of Next().
  std::optional<Outcome> Answered(const RigCommand& command, const RigReply& reply);

  // Writes are forgotten, but not a release, nor the way back to the VFO that was left.
  void DropWrites();
  // The connection broke: as above, and a release that was not answered waits again.
  void Interrupt();

  // False when this server does not answer the question which VFO is current.
  void SetVfoKnowable(bool knowable) { vfoKnowable_ = knowable; }

 private:
  // One frequency of VFO A or B: ask which is current, select, write, go back; only the write when
  // it is current.
  struct VfoWrite {
    enum class Step { Ask, Select, Write, Back };
    RigProperty property = RigProperty::FreqA;
    int32_t frequencyHz = 0;
    Step step = Step::Ask;
    std::string back;        // the VFO to return to; empty when it was never left
    bool left = false;       // the select was sent: the rig may be on the other VFO
    bool restoring = false;  // only the way back is left of it, after a break
    int32_t refusals = 0;    // of the way back
  };

  struct Waiting {
    RigProperty property;
    int32_t value;
  };

  bool MayRelease() const;
  void Remove(RigProperty property);
  RigCommand VfoStep();
  std::optional<Outcome> VfoStepAnswered(const RigReply& reply);
  void Decide(std::string_view current);

  std::deque<Waiting> waiting_;
  std::optional<VfoWrite> vfoWrite_;
  bool releaseWaits_ = false;
  int32_t releasesUnderWay_ = 0;
  bool releaseAccepted_ = false;
  bool vfoKnowable_ = true;
};

}  // namespace velt

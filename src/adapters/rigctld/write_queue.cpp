#include "adapters/rigctld/write_queue.h"

#include <algorithm>
#include <utility>

namespace velt {

namespace {

constexpr int32_t kMostRefusals = 3;

std::string_view TargetOf(RigProperty property) {
  return property == RigProperty::FreqA ? "VFOA" : "VFOB";
}

// A name that can be sent back as it came.
bool IsVfoName(std::string_view name) {
  return !name.empty() && name.size() <= 12 && name != "currVFO" && name != "None" &&
         std::all_of(name.begin(), name.end(), [](char c) {
           return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
         });
}

}  // namespace

void WriteQueue::Put(RigProperty property, int32_t value) {
  // The newer value goes to the end: had it kept the old one's place, an older write to the same
  // frequency under its other name would come after it.
  Remove(property);
  waiting_.push_back({property, value});
}

void WriteQueue::PutKey() {
  Put(RigProperty::Transmit, 1);
  releaseAccepted_ = false;
}

void WriteQueue::PutRelease() {
  Remove(RigProperty::Transmit);
  // Repeated faster than it is answered, it would else never count as accepted.
  if (!releaseWaits_ && releasesUnderWay_ == 0) releaseAccepted_ = false;
  releaseWaits_ = true;
}

bool WriteQueue::Waits(RigProperty property) const {
  return std::any_of(waiting_.begin(), waiting_.end(),
                     [property](const Waiting& w) { return w.property == property; });
}

void WriteQueue::ReleaseSentAhead() {
  releaseWaits_ = false;
  ++releasesUnderWay_;
}

std::optional<RigCommand> WriteQueue::Next() {
  if (releaseWaits_ && MayRelease()) {
    ReleaseSentAhead();
    return ReleaseCommand();
  }
  if (vfoWrite_) return VfoStep();
  if (waiting_.empty()) return std::nullopt;
  const Waiting next = waiting_.front();
  waiting_.pop_front();
  switch (next.property) {
    case RigProperty::Transmit:
      return KeyCommand();
    case RigProperty::Mode:
      return ModeCommand(next.value);
    case RigProperty::FreqA:
    case RigProperty::FreqB: {
      VfoWrite write;
      write.property = next.property;
      write.frequencyHz = next.value;
      vfoWrite_ = write;
      if (!vfoKnowable_) Decide({});
      return VfoStep();
    }
    default:
      return FreqCommand(next.property, next.value);
  }
}

std::optional<RigCommand> WriteQueue::WayBack() const {
  if (!vfoWrite_ || !vfoWrite_->left) return std::nullopt;
  return VfoCommand(vfoWrite_->back);
}

std::optional<WriteQueue::Outcome> WriteQueue::Answered(const RigCommand& command,
                                                        const RigReply& reply) {
  if (command.kind == CommandKind::Release) {
    releasesUnderWay_ = std::max(releasesUnderWay_ - 1, 0);
    releaseAccepted_ = reply.code == 0 && !Waits(RigProperty::Transmit);
    return Outcome{RigProperty::Transmit, 0, reply.code == 0};
  }
  const bool ofVfoWrite =
      command.kind == CommandKind::GetVfo || command.kind == CommandKind::SetVfo ||
      command.property == RigProperty::FreqA || command.property == RigProperty::FreqB;
  if (vfoWrite_ && ofVfoWrite) return VfoStepAnswered(reply);
  if (command.property == RigProperty::None) return std::nullopt;
  return Outcome{command.property, command.value, reply.code == 0};
}

void WriteQueue::Interrupt() {
  DropWrites();
  if (std::exchange(releasesUnderWay_, 0) > 0) releaseWaits_ = true;
}

void WriteQueue::DropWrites() {
  waiting_.clear();
  if (!vfoWrite_) return;
  if (!vfoWrite_->left) {
    vfoWrite_.reset();
    return;
  }
  vfoWrite_->step = VfoWrite::Step::Back;
  vfoWrite_->restoring = true;
}

// Between select and return a release would go to the wrong VFO of rigs that key by VFO. It does
// not wait for a return that fails.
bool WriteQueue::MayRelease() const {
  return !vfoWrite_ || !vfoWrite_->left || vfoWrite_->restoring || vfoWrite_->refusals > 0;
}

void WriteQueue::Remove(RigProperty property) {
  std::erase_if(waiting_, [property](const Waiting& w) { return w.property == property; });
}

RigCommand WriteQueue::VfoStep() {
  switch (vfoWrite_->step) {
    case VfoWrite::Step::Ask:
      return ReadCommand(CommandKind::GetVfo);
    case VfoWrite::Step::Select:
      vfoWrite_->left = true;
      return VfoCommand(TargetOf(vfoWrite_->property));
    case VfoWrite::Step::Write:
      return FreqCommand(vfoWrite_->property, vfoWrite_->frequencyHz);
    default:
      return VfoCommand(vfoWrite_->back);
  }
}

void WriteQueue::Decide(std::string_view current) {
  const std::string_view target = TargetOf(vfoWrite_->property);
  const bool known = IsVfoName(current);
  // A rig that does not tell its VFO is taken to be on A, where most of those stay.
  if (VfoLetter(known ? current : "VFOA") == VfoLetter(target)) {
    vfoWrite_->step = VfoWrite::Step::Write;
    return;
  }
  vfoWrite_->step = VfoWrite::Step::Select;
  vfoWrite_->back = known ? current : "VFOA";
}

std::optional<WriteQueue::Outcome> WriteQueue::VfoStepAnswered(const RigReply& reply) {
  VfoWrite& write = *vfoWrite_;
  const bool accepted = reply.code == 0;
  const Outcome outcome{write.property, write.frequencyHz, accepted};
  switch (write.step) {
    case VfoWrite::Step::Ask:
      Decide(accepted ? reply.Field("VFO") : std::string_view());
      return std::nullopt;
    case VfoWrite::Step::Select:
      // Written now it would land on the VFO that is current; a refusal by time may still have
      // switched, so the way back is gone in any case.
      write.step = accepted ? VfoWrite::Step::Write : VfoWrite::Step::Back;
      return accepted ? std::nullopt : std::optional(outcome);
    case VfoWrite::Step::Write:
      if (write.left) {
        write.step = VfoWrite::Step::Back;
      } else {
        vfoWrite_.reset();
      }
      return outcome;
    case VfoWrite::Step::Back:
      if (accepted || ++write.refusals >= kMostRefusals) vfoWrite_.reset();
      return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace velt

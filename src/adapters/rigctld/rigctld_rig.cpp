#include "adapters/rigctld/rigctld_rig.h"

#include <utility>

#include "adapters/rigctld/mode_names.h"

namespace velt {

namespace {

constexpr int32_t kLowestHz = 10'000;
constexpr int32_t kHighestHz = 2'000'000'000;
// Single failures are usual while somebody turns the knob.
constexpr int32_t kMostFailures = 3;
// Less than any reply may take: after that nothing can be sent there any more.
constexpr Milliseconds kLeaveLimit{900};

std::string TypeOf(const RigReply& caps) {
  std::string maker(caps.Field("Mfg name"));
  std::string model(caps.Field("Model name"));
  if (maker.empty() || model.starts_with(maker)) return model;
  return model.empty() ? maker : maker + " " + model;
}

}  // namespace

RigctldRig::RigctldRig(ByteChannel& channel, Scheduler& scheduler)
    : scheduler_(scheduler), session_(channel, scheduler, *this) {}

RigctldRig::~RigctldRig() {
  next_.reset();
  if (left_) FinishLeaving();
}

void RigctldRig::Open(const ServerAddress& address, std::function<void(bool)> answered) {
  if (IsOpen()) {
    const bool decided = link_.state != RigLink::State::Connecting;
    if (!decided) {
      waiting_.push_back(std::move(answered));
    } else if (answered) {
      answered(link_.state != RigLink::State::Reconnecting);
    }
    return;
  }
  waiting_.push_back(std::move(answered));
  SetState(RigLink::State::Connecting, RigLink::Cause::None);
  next_ = address;
  Connect();
}

void RigctldRig::Close() {
  waiting_.clear();
  if (!IsOpen()) return;
  next_.reset();
  Leave();
  hasAnswered_ = false;
  link_ = RigLink();
}

void RigctldRig::Move(const ServerAddress& address) {
  const bool open = IsOpen();
  if (open) Leave();
  forgetsLeft_ = left_.has_value();
  queue_ = WriteQueue();
  picture_ = RigPicture();
  type_.clear();
  ShowPicture();
  if (!open) return;
  // Of the new one nothing is known that could be stale.
  link_ = RigLink();
  SetState(RigLink::State::Connecting, RigLink::Cause::None);
  next_ = address;
  Connect();
}

void RigctldRig::ReleaseNow(Milliseconds limit) {
  if (!IsOpen()) return;
  queue_.PutRelease();
  picture_.ReleaseAsked();
  // It is for the next server.
  if (left_) return;
  const bool connected = session_.IsConnected();
  const bool sent = session_.SendAhead(ReleaseCommand(), limit);
  if (sent && connected) queue_.ReleaseSentAhead();
}

RigLink RigctldRig::Link() const {
  RigLink link = link_;
  link.retryInSeconds = session_.RetryInSeconds();
  return link;
}

std::string RigctldRig::StatusStr() const {
  switch (link_.state) {
    case RigLink::State::Off:
      return "Disabled";
    case RigLink::State::Linked:
      return "On-line";
    case RigLink::State::Silent:
    case RigLink::State::Reconnecting:
    case RigLink::State::Connecting:
      break;
  }
  switch (link_.cause) {
    case RigLink::Cause::HostNotFound:
    case RigLink::Cause::Refused:
    case RigLink::Cause::Unreachable:
    case RigLink::Cause::Closed:
      return "Port is not available";
    case RigLink::Cause::RigOff:
      return "Rig is turned off";
    default:
      return "Rig is not responding";
  }
}

bool RigctldRig::SetFreq(int32_t frequencyHz) {
  return WriteFrequency(RigProperty::Freq, frequencyHz);
}

bool RigctldRig::SetFreqA(int32_t frequencyHz) {
  return WriteFrequency(RigProperty::FreqA, frequencyHz);
}

bool RigctldRig::SetFreqB(int32_t frequencyHz) {
  return WriteFrequency(RigProperty::FreqB, frequencyHz);
}

bool RigctldRig::SetMode(int32_t mode) {
  return !ModeName(mode).empty() && Write(RigProperty::Mode, mode);
}

bool RigctldRig::SetTx(int32_t value) {
  if (value == PM_RX) {
    queue_.PutRelease();
    picture_.ReleaseAsked();
  } else {
    if (value != PM_TX || link_.state != RigLink::State::Linked) return false;
    queue_.PutKey();
    picture_.KeyAsked();
  }
  keyRefused_ = false;
  session_.Pump();
  return true;
}

bool RigctldRig::WritesWait() const {
  return left_ || (session_.IsConnected() && (queue_.Waits() || session_.WriteUnderWay()));
}

std::optional<ReleaseRecipe> RigctldRig::Recipe() const {
  const auto peer = left_ ? std::nullopt : session_.Peer();
  if (!peer) return std::nullopt;
  ReleaseRecipe recipe;
  recipe.host = peer->host;
  recipe.port = peer->port;
  recipe.release = kReleaseLine;
  if (plan_.Answers(CommandKind::GetTransmit)) {
    recipe.ask = ReadCommand(CommandKind::GetTransmit).line;
  }
  recipe.answerEnd = "RPRT ";
  recipe.accepted = "RPRT 0";
  recipe.tells = "PTT: ";
  recipe.receives = "PTT: 0";
  return recipe;
}

std::optional<RigCommand> RigctldRig::NextCommand() {
  if (left_) {
    auto command = left_->Next();
    if (!command) leaving_ = scheduler_.After(Milliseconds(0), [this] { FinishLeaving(); });
    return command;
  }
  if (auto command = queue_.Next()) return command;
  if (const auto kind = plan_.Next(scheduler_.Now())) return ReadCommand(*kind);
  return std::nullopt;
}

Milliseconds RigctldRig::Pause() {
  return plan_.Pause(scheduler_.Now());
}

void RigctldRig::Connected() {
  failures_ = 0;
  plan_.Restart();
}

void RigctldRig::Replied(const RigCommand& command, const RigReply& reply) {
  if (left_) {
    left_->Answered(command, reply);
    return;
  }
  hasAnswered_ = true;
  TakeReading(command, reply);
  TakeOutcome(command, reply);
  ShowPicture();
  JudgeRig(command, reply);
}

void RigctldRig::Lost(RigLink::Cause cause, const RigCommand* unanswered) {
  if (left_) {
    leaving_ = scheduler_.After(Milliseconds(0), [this] { FinishLeaving(); });
    return;
  }
  if (unanswered && cause == RigLink::Cause::NoAnswer) plan_.Unanswered(unanswered->kind);
  queue_.SetVfoKnowable(plan_.Answers(CommandKind::GetVfo));
  queue_.Interrupt();
  picture_.Unsettle();
  SetState(RigLink::State::Reconnecting, cause);
  Answer(false);
}

void RigctldRig::CountdownChanged() {
  if (!left_) statusChanged.Raise();
}

bool RigctldRig::WriteFrequency(RigProperty property, int32_t frequencyHz) {
  return frequencyHz >= kLowestHz && frequencyHz <= kHighestHz && Write(property, frequencyHz);
}

bool RigctldRig::Write(RigProperty property, int32_t value) {
  if (link_.state != RigLink::State::Linked) return false;
  queue_.Put(property, value);
  picture_.Written(property, value);
  session_.Pump();
  ShowPicture();
  return true;
}

void RigctldRig::Connect() {
  if (next_ && !left_) session_.Start(*std::exchange(next_, std::nullopt));
}

// The release goes at once, past what is under way. The rest, such as a frequency that is put back
// or the way back to a VFO, needs the answers of the rig.
void RigctldRig::Leave() {
  if (left_) return;
  left_ = std::exchange(queue_, WriteQueue());
  left_->DropKey();
  picture_.Unsettle();
  plan_.ForgetServer();
  keyRefused_ = false;
  const bool goesOn = session_.IsConnected() && (left_->Waits() || session_.WriteUnderWay());
  if (!goesOn) return FinishLeaving();
  if (left_->ReleaseWaits() && session_.SendAhead(ReleaseCommand(), Milliseconds(0))) {
    left_->ReleaseSentAhead();
  }
  leaving_ = scheduler_.After(kLeaveLimit, [this] { FinishLeaving(); });
  session_.Pump();
}

void RigctldRig::FinishLeaving() {
  leaving_.Cancel();
  // There was no time to see that it arrives, but it must not stay on the other VFO for that.
  const auto back = left_->WayBack();
  if (back && session_.IsConnected()) session_.SendAhead(*back, Milliseconds(0));
  session_.Stop();
  left_->Interrupt();
  if (!std::exchange(forgetsLeft_, false)) {
    if (queue_.ReleaseWaits()) left_->PutRelease();
    queue_ = std::move(*left_);
  }
  left_.reset();
  Connect();
}

// The frequency decides: servers answer much of the rest from memory while the rig is silent.
void RigctldRig::JudgeRig(const RigCommand& command, const RigReply& reply) {
  const bool decides = command.kind == CommandKind::GetFreq;
  if (!reply.RigIsSilent()) {
    if (!decides) return;
    failures_ = 0;
    plan_.SetSilent(false);
    SetState(RigLink::State::Linked, RigLink::Cause::None);
    Answer(true);
    return;
  }
  if (!decides && failures_ == 0) return;
  if (++failures_ < kMostFailures || link_.state == RigLink::State::Silent) return;
  plan_.SetSilent(true);
  queue_.DropWrites();
  picture_.Unsettle();
  SetState(RigLink::State::Silent, RigLink::Cause::RigSilent);
  Answer(true);
}

void RigctldRig::TakeReading(const RigCommand& command, const RigReply& reply) {
  if (EchoOf(command.kind).starts_with("set_")) return;
  const SteadyTime now = scheduler_.Now();
  plan_.Answered(command.kind, reply.code, now);
  queue_.SetVfoKnowable(plan_.Answers(CommandKind::GetVfo));
  if (!plan_.Answers(CommandKind::GetTransmit)) picture_.ForgetTransmit();
  if (reply.code != 0) return;
  picture_.Reported(command.kind, reply, now);
  if (command.kind == CommandKind::GetType && type_ != TypeOf(reply)) {
    type_ = TypeOf(reply);
    statusChanged.Raise();
  }
  if (command.kind == CommandKind::GetPower && link_.state == RigLink::State::Silent) {
    const bool off = reply.Field("Power Status") == "0";
    SetState(RigLink::State::Silent, off ? RigLink::Cause::RigOff : RigLink::Cause::RigSilent);
  }
}

void RigctldRig::TakeOutcome(const RigCommand& command, const RigReply& reply) {
  const auto outcome = queue_.Answered(command, reply);
  if (!outcome) return;
  const SteadyTime now = scheduler_.Now();
  picture_.Acknowledged(outcome->property, outcome->value, outcome->accepted, now);
  if (outcome->property == RigProperty::FreqA || outcome->property == RigProperty::FreqB) {
    plan_.HurryVfos(now);
  }
  if (outcome->property == RigProperty::Transmit) {
    plan_.HurryTransmit();
  } else if (!outcome->accepted && !queue_.Waits(outcome->property)) {
    writeRefused.Raise({outcome->property == RigProperty::Mode, outcome->value});
  }
  // Refused to a key that was taken back meanwhile, or that is being tried again, it is no news.
  const bool last = !queue_.Waits(RigProperty::Transmit) && !queue_.ReleaseWaits();
  if (command.kind == CommandKind::Key && reply.Refused() && last) {
    keyRefused_ = true;
    keyRefused.Raise();
  }
}

void RigctldRig::SetState(RigLink::State state, RigLink::Cause cause) {
  const bool wasGood = link_.state == RigLink::State::Linked;
  const bool again = link_.state == state && link_.cause == cause;
  if (again && state != RigLink::State::Reconnecting) return;
  link_.state = state;
  link_.cause = cause;
  link_.stale = state != RigLink::State::Linked && (wasGood || link_.stale);
  statusChanged.Raise();
}

void RigctldRig::Answer(bool reached) {
  for (const auto& answered : std::exchange(waiting_, {})) {
    if (answered) answered(reached);
  }
}

void RigctldRig::ShowPicture() {
  const RigPicture::Values now = picture_.Now();
  plan_.SetSplit(now.split);
  plan_.SetTransmitting(now.told == TxReport::Transmits);
  const int32_t changes = now.ChangesFrom(std::exchange(shown_, now));
  if (changes != 0) paramsChanged.Raise(changes);
}

}  // namespace velt

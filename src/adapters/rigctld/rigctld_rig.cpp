#include "adapters/rigctld/rigctld_rig.h"

#include <utility>

#include "adapters/rigctld/mode_names.h"

namespace velt {

namespace {

constexpr int32_t kLowestHz = 10'000;
constexpr int32_t kHighestHz = 2'000'000'000;
// Single failures are usual while somebody turns the knob.
constexpr int32_t kMostFailures = 3;

// The server could not get through to the rig in time.
bool IsRigFailure(int32_t code) {
  return code == -5 || code == -6;
}

std::string TypeOf(const RigReply& caps) {
  std::string maker(caps.Field("Mfg name"));
  std::string model(caps.Field("Model name"));
  if (maker.empty() || model.starts_with(maker)) return model;
  return model.empty() ? maker : maker + " " + model;
}

}  // namespace

RigctldRig::RigctldRig(ByteChannel& channel, Scheduler& scheduler, Events events)
    : scheduler_(scheduler), events_(std::move(events)), session_(channel, scheduler, *this) {}

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
  SetState(RigLink::State::Connecting);
  session_.Start(address);
}

void RigctldRig::Close() {
  waiting_.clear();
  if (!IsOpen()) return;
  Leave();
  hasAnswered_ = false;
  link_ = RigLink();
}

void RigctldRig::Move(const ServerAddress& address) {
  if (!IsOpen()) return;
  Leave();
  // The release was meant for the rig that was left.
  queue_ = WriteQueue();
  keyWatch_ = KeyWatch();
  plan_.ForgetServer();
  picture_ = RigPicture();
  type_.clear();
  link_.stale = false;
  SetState(RigLink::State::Connecting);
  ShowPicture();
  session_.Start(address);
}

void RigctldRig::ReleaseNow(Milliseconds limit) {
  if (!IsOpen()) return;
  queue_.PutRelease();
  picture_.ReleaseAsked();
  const bool connected = session_.IsConnected();
  const bool sent = session_.SendAhead(ReleaseCommand(), limit);
  if (sent && connected) queue_.ReleaseSent();
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
      return poweredOff_ ? "Rig is turned off" : "Rig is not responding";
    case RigLink::State::Reconnecting:
      if (fault_ == ServerSession::Fault::NoServer) return "Port is not available";
      break;
    case RigLink::State::Connecting:
      break;
  }
  return "Rig is not responding";
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
  session_.Pump();
  return true;
}

std::optional<RigCommand> RigctldRig::NextCommand() {
  if (auto command = queue_.Next()) {
    if (command->kind == CommandKind::Key) {
      keyWatch_.KeySent();
    }
    return command;
  }
  if (const auto kind = plan_.Next(scheduler_.Now())) return ReadCommand(*kind);
  return std::nullopt;
}

Milliseconds RigctldRig::Pause() {
  return plan_.Pause(scheduler_.Now());
}

void RigctldRig::Connected() {
  failures_ = 0;
  poweredOff_ = false;
  plan_.Restart();
}

void RigctldRig::Replied(const RigCommand& command, const RigReply& reply) {
  hasAnswered_ = true;
  TakeReading(command, reply);
  TakeOutcome(command, reply);
  ShowPicture();
  JudgeRig(command, reply.code);
}

void RigctldRig::Lost(ServerSession::Fault fault, const RigCommand* unanswered) {
  fault_ = fault;
  if (unanswered && fault == ServerSession::Fault::NoAnswer) plan_.Unanswered(unanswered->kind);
  queue_.SetVfoKnowable(plan_.Knows(CommandKind::GetVfo));
  queue_.Interrupt();
  picture_.Unsettle();
  SetState(RigLink::State::Reconnecting);
  Answer(false);
}

void RigctldRig::CountdownChanged() {
  events_.statusChanged();
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

// A release that has not been sent yet leaves with the connection.
void RigctldRig::Leave() {
  if (queue_.ReleaseWanted() && session_.IsConnected()) {
    session_.SendAhead(ReleaseCommand(), Milliseconds(0));
  }
  session_.Stop();
  queue_.Interrupt();
  picture_.Unsettle();
}

// The frequency decides: servers answer much of the rest from memory while the rig is silent.
void RigctldRig::JudgeRig(const RigCommand& command, int32_t code) {
  const bool decides = command.kind == CommandKind::GetFreq;
  if (!IsRigFailure(code)) {
    if (!decides) return;
    failures_ = 0;
    poweredOff_ = false;
    plan_.SetSilent(false);
    SetState(RigLink::State::Linked);
    Answer(true);
    return;
  }
  if (!decides && failures_ == 0) return;
  if (++failures_ < kMostFailures || link_.state == RigLink::State::Silent) return;
  plan_.SetSilent(true);
  queue_.Interrupt();
  picture_.Unsettle();
  SetState(RigLink::State::Silent);
  Answer(true);
}

void RigctldRig::TakeReading(const RigCommand& command, const RigReply& reply) {
  if (EchoOf(command.kind).starts_with("set_")) return;
  plan_.Answered(command.kind, reply.code, scheduler_.Now());
  queue_.SetVfoKnowable(plan_.Knows(CommandKind::GetVfo));
  if (reply.code != 0) return;
  picture_.Reported(command.kind, reply);
  if (command.kind == CommandKind::GetType && type_ != TypeOf(reply)) {
    type_ = TypeOf(reply);
    events_.statusChanged();
  }
  if (command.kind == CommandKind::GetPower) {
    const bool off = reply.Field("Power Status") == "0";
    if (std::exchange(poweredOff_, off) != off) events_.statusChanged();
  }
  if (command.kind == CommandKind::GetTransmit) {
    keyWatch_.Reported(reply.Field("PTT") != "0");
  }
}

void RigctldRig::TakeOutcome(const RigCommand& command, const RigReply& reply) {
  const auto outcome = queue_.Answered(command, reply);
  if (!outcome) return;
  picture_.Acknowledged(outcome->property, outcome->value, outcome->accepted);
  if (outcome->property == RigProperty::FreqA || outcome->property == RigProperty::FreqB) {
    plan_.HurryVfos();
  }
  if (outcome->property == RigProperty::Transmit) plan_.HurryTransmit();
  if (command.kind == CommandKind::Key) {
    keyWatch_.KeyAnswered(!outcome->accepted && !IsRigFailure(reply.code));
  } else if (command.kind == CommandKind::Release) {
    keyWatch_.ReleaseAnswered(outcome->accepted, plan_.Knows(CommandKind::GetTransmit));
  }
}

void RigctldRig::SetState(RigLink::State state) {
  const bool wasGood = link_.state == RigLink::State::Linked;
  const bool again = link_.state == state && state != RigLink::State::Reconnecting;
  if (again) return;
  link_.state = state;
  link_.stale = state != RigLink::State::Linked && (wasGood || link_.stale);
  events_.statusChanged();
}

void RigctldRig::Answer(bool reached) {
  for (const auto& answered : std::exchange(waiting_, {})) {
    if (answered) answered(reached);
  }
}

void RigctldRig::ShowPicture() {
  const RigPicture::Values now = picture_.Now();
  plan_.SetSplit(now.split);
  plan_.SetTransmitting(now.transmitting);
  const int32_t changes = now.ChangesFrom(std::exchange(shown_, now));
  if (changes != 0) events_.paramsChanged(changes);
}

}  // namespace velt

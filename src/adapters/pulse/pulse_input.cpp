#include "adapters/pulse/pulse_input.h"

#include <pulse/error.h>

#include <algorithm>

namespace velt {
namespace {

constexpr Milliseconds kOpenLimit{3000};
constexpr Milliseconds kVerifyLimit{500};
// Long enough for a slow server; a frozen one may have been replaced meanwhile.
constexpr Milliseconds kWatchAttemptLimit{10000};
constexpr Milliseconds kFirstPause{250};
constexpr Milliseconds kLongestPause{1000};

}  // namespace

PulseInput::PulseInput(Scheduler& scheduler)
    : scheduler_(scheduler),
      self_(std::make_shared<PulseInput*>(this)),
      limit_(loop_, [this] { OnLimit(); }),
      retry_(loop_, [this] { Try(); }) {}

PulseInput::~PulseInput() {
  const PulseLoop::Lock lock(loop_);
  limit_.Stop();
  retry_.Stop();
  Drop();
}

std::vector<AudioDevice> PulseInput::Devices() const {
  const PulseLoop::Lock lock(loop_);
  return known_.Devices();
}

void PulseInput::Open(const std::string& device) {
  const PulseLoop::Lock lock(loop_);
  Begin(Phase::Opening);
  // A connection to a server that does not answer any more would look like a good one.
  Drop();
  wanted_ = device;
  source_ = {};
  mustGoFirst_ = false;
  limit_.Start(kOpenLimit);
  retry_.Start(Milliseconds(0));
}

void PulseInput::Close() {
  const PulseLoop::Lock lock(loop_);
  Begin(Phase::Idle);
}

void PulseInput::WatchForReturn() {
  const PulseLoop::Lock lock(loop_);
  Begin(Phase::Watching);
  pause_ = kFirstPause;
  limit_.Start(kWatchAttemptLimit);
  retry_.Start(Milliseconds(0));
}

void PulseInput::Begin(Phase phase) {
  ++generation_;
  EnterPhase(phase);
}

void PulseInput::EnterPhase(Phase phase) {
  ring_.Close();
  limit_.Stop();
  retry_.Stop();
  stream_.reset();
  phase_ = phase;
}

void PulseInput::Try() {
  if (connection_) {
    connection_->Refresh();
  } else {
    connection_ =
        std::make_unique<PulseConnection>(loop_, static_cast<PulseConnection::Listener&>(*this));
    connection_->Connect();
  }
}

void PulseInput::OnLimit() {
  switch (phase_) {
    case Phase::Opening:
      Drop();
      End(AudioEvent::Kind::OpenFailed, kNoAnswerText);
      break;
    case Phase::Verifying:
      TellVerifiedLoss(true);
      break;
    case Phase::Watching:
      Drop();
      limit_.Start(kWatchAttemptLimit);
      Try();
      break;
    case Phase::Idle:
    case Phase::Running:
      break;
  }
}

void PulseInput::OnSources(const PulseSources& sources) {
  known_ = sources;
  const PulseSource* wanted = Wanted();
  const bool same = wanted && wanted->index == source_.index;
  switch (phase_) {
    case Phase::Opening:
      if (!stream_) PickSource();
      break;
    case Phase::Running:
      if (!same) TellVerifiedLoss(false);
      break;
    case Phase::Verifying:
      TellVerifiedLoss(same);
      break;
    case Phase::Watching:
      mustGoFirst_ = mustGoFirst_ && same;
      if (!mustGoFirst_ && !(stream_ && same)) ProbeSource();
      break;
    case Phase::Idle:
      break;
  }
}

void PulseInput::PickSource() {
  if (const PulseSource* source = Wanted()) {
    wanted_ = source->name;
    OpenStream(*source);
  } else if (wanted_.empty()) {
    End(AudioEvent::Kind::OpenFailed, "Sound server has no source.");
  } else {
    End(AudioEvent::Kind::OpenFailed, "Sound source " + wanted_ + " does not exist.");
  }
}

void PulseInput::ProbeSource() {
  stream_.reset();
  if (const PulseSource* source = Wanted()) OpenStream(*source);
}

void PulseInput::OpenStream(const PulseSource& source) {
  source_ = source;
  stream_ = std::make_unique<PulseStream>(connection_->Context(), ring_,
                                          static_cast<PulseStream::Listener&>(*this));
  stream_->Connect(source_);
}

void PulseInput::OnConnectionFailed(const std::string& reason) {
  const bool wasUp = !source_.name.empty();
  Drop();
  known_ = {};
  mustGoFirst_ = false;
  switch (phase_) {
    case Phase::Opening:
      End(AudioEvent::Kind::OpenFailed, wasUp ? kServerGoneText : NoServerText(reason));
      break;
    case Phase::Running:
    case Phase::Verifying:
      End(AudioEvent::Kind::Lost, kServerGoneText);
      break;
    case Phase::Watching:
      RetryLater();
      break;
    case Phase::Idle:
      break;
  }
}

void PulseInput::OnStreamReady() {
  if (phase_ != Phase::Opening) return;
  if (stream_->Suspended()) {
    EndOnSource(AudioEvent::Kind::OpenFailed, " is suspended.");
    return;
  }
  limit_.Stop();
  ring_.Hold();
  phase_ = Phase::Running;
  Tell(AudioEvent::Kind::Opened, source_.name);
}

void PulseInput::OnStreamFailed(int error) {
  if (phase_ == Phase::Opening) {
    const bool removed = error == PA_ERR_NOENTITY || error == PA_ERR_KILLED;
    EndOnSource(AudioEvent::Kind::OpenFailed,
                removed ? " was removed." : std::string(": ") + pa_strerror(error) + ".");
  } else if (phase_ == Phase::Running) {
    VerifyLoss({});
  } else {
    stream_.reset();
    RetryLater();
  }
}

void PulseInput::OnStreamMoved() {
  const std::string movedTo = stream_->SourceName();
  if (movedTo == source_.name) return;
  if (phase_ == Phase::Running) {
    VerifyLoss(movedTo);
  } else {
    stream_.reset();
    connection_->Refresh();
  }
}

void PulseInput::OnStreamSuspended() {
  if (phase_ == Phase::Running) {
    EndOnSource(AudioEvent::Kind::Lost, " is suspended.");
  }
}

void PulseInput::OnStreamData() {
  // Hearing something is the only proof: a suspended or a stuck source looks like any other.
  if (phase_ == Phase::Watching) End(AudioEvent::Kind::Returned, source_.name);
}

void PulseInput::VerifyLoss(const std::string& movedTo) {
  stream_.reset();
  ring_.Hold();
  movedTo_ = movedTo;
  phase_ = Phase::Verifying;
  limit_.Start(kVerifyLimit);
  connection_->Refresh();
}

void PulseInput::TellVerifiedLoss(bool sourceIsThere) {
  // A user who moved or ended the stream meant it: the source alone is no reason to come back.
  mustGoFirst_ = sourceIsThere;
  if (!sourceIsThere) {
    EndOnSource(AudioEvent::Kind::Lost, " was removed.");
  } else if (movedTo_.empty()) {
    End(AudioEvent::Kind::Lost, "Sound server ended the stream.");
  } else {
    const PulseSource* target = known_.Find(movedTo_);
    End(AudioEvent::Kind::Lost, "Sound moved to " + (target ? target->Label() : movedTo_) + ".");
  }
}

void PulseInput::RetryLater() {
  retry_.Start(pause_);
  pause_ = std::min(2 * pause_, kLongestPause);
}

void PulseInput::Drop() {
  stream_.reset();
  connection_.reset();
}

void PulseInput::EndOnSource(AudioEvent::Kind kind, const std::string& fate) {
  End(kind, "Sound source " + source_.Label() + fate);
}

void PulseInput::End(AudioEvent::Kind kind, std::string text) {
  EnterPhase(Phase::Idle);
  Tell(kind, std::move(text));
}

void PulseInput::Tell(AudioEvent::Kind kind, std::string text) {
  const auto deliver = [self = std::weak_ptr(self_), generation = generation_,
                        event = AudioEvent{kind, std::move(text)}] {
    const auto input = self.lock();
    if (!input || (*input)->generation_ != generation) return;
    (*input)->happened.Raise(event);
  };
  scheduler_.Post(deliver);
}

const PulseSource* PulseInput::Wanted() const {
  return known_.Find(wanted_.empty() ? known_.defaultName : wanted_);
}

}  // namespace velt

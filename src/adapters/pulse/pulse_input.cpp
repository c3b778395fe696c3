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
// A plug that was touched, or a device that radio frequency has upset, is back by then.
constexpr Milliseconds kSameSourceTime{3000};

// 21.3 ms: a little less than a tick of 25 ms, so that each finds a new block, and no more than
// PipeWire has after one period of 1024 samples, or two of 512, at 48 kHz. With any more it would
// wait for another period now and then.
constexpr uint32_t kFragmentBytes = 940 * sizeof(int16_t);
constexpr uint32_t kServerBacklogBytes = kSampleRateHz;  // half a second
constexpr StreamFormat kAnalysed{"VELT-SA", kSampleRateHz, 1, kFragmentBytes, kServerBacklogBytes};

// What the servers put in the place of missing devices.
bool IsStandIn(const PulseSource& source) {
  return source.name == "auto_null" || source.name.starts_with("auto_null.");
}

}  // namespace

PulseInput::PulseInput(Scheduler& scheduler) : PulseInput(scheduler, kAnalysed, ring_) {}

PulseInput::PulseInput(Scheduler& scheduler, const StreamFormat& format, SampleSink& sink)
    : scheduler_(scheduler),
      self_(std::make_shared<PulseInput*>(this)),
      format_(format),
      sink_(sink),
      limit_(loop_, [this] { OnLimit(); }),
      retry_(loop_, [this] { Try(); }),
      sameTime_(loop_, [this] {
        sameOnly_ = false;
        choice_.clear();
        Try();
      }) {}

PulseInput::~PulseInput() {
  const PulseLoop::Lock lock(loop_);
  limit_.Stop();
  retry_.Stop();
  sameTime_.Stop();
  Drop();
}

std::vector<AudioDevice> PulseInput::Devices() const {
  const PulseLoop::Lock lock(loop_);
  return known_.Devices();
}

// In every other phase the list is asked for anyway.
void PulseInput::FindDevices() {
  const PulseLoop::Lock lock(loop_);
  if (phase_ == Phase::Idle) retry_.Start(Milliseconds(0));
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

void PulseInput::BeginAt(const std::string& source) {
  const PulseLoop::Lock lock(loop_);
  choice_ = source;
}

void PulseInput::Close() {
  const PulseLoop::Lock lock(loop_);
  Begin(Phase::Idle);
}

void PulseInput::WatchForReturn() {
  const PulseLoop::Lock lock(loop_);
  Begin(Phase::Watching);
  ExpectReturn();
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
  sameTime_.Stop();
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
      if (stream_) {
        FinishOpening();
      } else {
        PickSource();
      }
      break;
    case Phase::Running:
      FollowStream();
      break;
    case Phase::Verifying:
      TellVerifiedLoss(same);
      break;
    case Phase::Watching:
      if (sameOnly_ && !sameTime_.Running()) sameTime_.Start(kSameSourceTime);
      mustGoFirst_ = mustGoFirst_ && same;
      if (!mustGoFirst_ && !(stream_ && same)) ProbeSource();
      break;
    case Phase::Idle:
      break;
  }
}

void PulseInput::PickSource() {
  if (choice_ == known_.defaultName) choice_.clear();
  if (const PulseSource* source = Wanted()) {
    OpenStream(*source);
  } else if (FollowsDefault()) {
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
  stream_ = std::make_unique<PulseStream>(connection_->Context(), format_, sink_,
                                          static_cast<PulseStream::Listener&>(*this));
  using Choice = PulseStream::Choice;
  const bool asDefault = phase_ == Phase::Opening && source_.name != choice_;
  stream_->Connect(source_.name, !FollowsDefault() ? Choice::Pinned
                                 : asDefault       ? Choice::Server
                                                   : Choice::First);
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
      ExpectReturn();
      RetryLater();
      break;
    case Phase::Idle:
      break;
  }
}

void PulseInput::OnStreamReady() {
  if (phase_ != Phase::Opening) return;
  FinishOpening();
  if (phase_ == Phase::Opening) connection_->Refresh();  // it is on a source newer than the list
}

void PulseInput::FinishOpening() {
  const PulseSource* source = known_.Find(stream_->SourceName());
  if (!source) return;
  source_ = *source;
  if (stream_->Suspended()) {
    EndOnSource(AudioEvent::Kind::OpenFailed, " is suspended.");
    return;
  }
  limit_.Stop();
  ring_.Hold();
  phase_ = Phase::Running;
  NoteChoice();
  Tell({AudioEvent::Kind::Opened, source_.name, source_.Label()});
}

void PulseInput::FollowStream() {
  const PulseSource* before = known_.Find(source_.name);
  const bool gone = !before || before->index != source_.index;
  if (gone && !(FollowsDefault() && IsStandIn(source_))) {
    TellVerifiedLoss(false);
    return;
  }
  const PulseSource* now = known_.Find(stream_->SourceName());
  if (!now) return;
  const bool moved = now->index != source_.index;
  source_ = *now;
  NoteChoice();
  if (moved) Tell({AudioEvent::Kind::Moved, source_.name, source_.Label()});
}

void PulseInput::NoteChoice() {
  // The servers let streams go along with the default source except those that the user has moved,
  // and remember these only when they are set up to.
  const bool chosen = FollowsDefault() && source_.name != known_.defaultName;
  choice_ = chosen ? source_.name : std::string();
}

void PulseInput::OnStreamFailed(int error) {
  if (phase_ == Phase::Opening) {
    const bool removed = error == PA_ERR_NOENTITY || error == PA_ERR_KILLED;
    EndOnSource(AudioEvent::Kind::OpenFailed,
                removed ? " was removed." : std::string(": ") + pa_strerror(error) + ".");
  } else if (phase_ == Phase::Running) {
    VerifyLoss();
  } else {
    stream_.reset();
    RetryLater();
  }
}

void PulseInput::OnStreamMoved() {
  // While it opens or runs the list decides: whether the source that it left is still there.
  if (phase_ == Phase::Watching && stream_->SourceName() != source_.name) stream_.reset();
  connection_->Refresh();
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

void PulseInput::VerifyLoss() {
  stream_.reset();
  ring_.Hold();
  phase_ = Phase::Verifying;
  limit_.Start(kVerifyLimit);
  connection_->Refresh();
}

void PulseInput::TellVerifiedLoss(bool sourceIsThere) {
  // A user who ended the stream meant it: the source alone is no reason to come back.
  mustGoFirst_ = sourceIsThere;
  if (sourceIsThere) {
    End(AudioEvent::Kind::Lost, "Sound server ended the stream.");
  } else {
    EndOnSource(AudioEvent::Kind::Lost, " was removed.");
  }
}

void PulseInput::ExpectReturn() {
  sameTime_.Stop();
  sameOnly_ = FollowsDefault() && !source_.name.empty() && !IsStandIn(source_);
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
  Tell({kind, std::move(text)});
}

void PulseInput::Tell(AudioEvent event) {
  const auto deliver = [self = std::weak_ptr(self_), generation = generation_,
                        event = std::move(event)] {
    const auto input = self.lock();
    if (!input || (*input)->generation_ != generation) return;
    (*input)->happened.Raise(event);
  };
  scheduler_.Post(deliver);
}

const PulseSource* PulseInput::Wanted() const {
  if (!FollowsDefault()) return known_.Find(wanted_);
  if (const PulseSource* chosen = known_.Find(choice_)) return chosen;
  const PulseSource* present = known_.Find(known_.defaultName);
  if (!present || phase_ != Phase::Watching) return present;
  const bool another = !source_.name.empty() && present->name != source_.name;
  return another && (sameOnly_ || IsStandIn(*present)) ? nullptr : present;
}

}  // namespace velt

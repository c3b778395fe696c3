#include "adapters/pulse/pulse_player.h"

#include <pulse/error.h>

#include <algorithm>
#include <utility>

namespace velt {
namespace {

constexpr Milliseconds kPumpEvery{20};
constexpr Milliseconds kOpenLimit{10'000};  // a disk that has to wake up first included
constexpr Milliseconds kDiskLimit{10'000};
// Much longer than what the server holds: it is frozen, or its output is suspended.
constexpr Milliseconds kServerLimit{3000};
constexpr size_t kValuesAtOnce = 8192;
constexpr double kLongestSeconds = 1e9;  // what claims more does not know its length
constexpr const char* kNoDiskText = "The disk does not answer.";

SteadyTime Now() {
  return std::chrono::steady_clock::now();
}

}  // namespace

PulsePlayer::PulsePlayer(Scheduler& scheduler,
                         std::function<std::unique_ptr<PlayedSound>()> makeSound)
    : scheduler_(scheduler),
      makeSound_(std::move(makeSound)),
      self_(std::make_shared<PulsePlayer*>(this)),
      piece_(kValuesAtOnce),
      pump_(loop_, [this] { Pump(); }) {}

PulsePlayer::~PulsePlayer() {
  const PulseLoop::Lock lock(loop_);
  Drop();
}

void PulsePlayer::Prepare(const std::filesystem::path& file) {
  const PulseLoop::Lock lock(loop_);
  ++generation_;
  Drop();
  heard_ = {};
  feed_ = std::make_unique<SoundFeed>(makeSound_(), file);
  phase_ = Phase::Opening;
  since_ = Now();
  pump_.Start(Milliseconds(0));
}

void PulsePlayer::Start() {
  const PulseLoop::Lock lock(loop_);
  if (phase_ != Phase::Waiting) return;
  playback_->Start();
  phase_ = Phase::Playing;
  since_ = Now();
  pump_.Start(Milliseconds(0));
}

void PulsePlayer::Stop() {
  const PulseLoop::Lock lock(loop_);
  ++generation_;
  Drop();
}

SoundPlayer::Progress PulsePlayer::Heard() const {
  const PulseLoop::Lock lock(loop_);
  if (!playback_) return heard_;
  Progress now = heard_;
  now.position = std::max(now.position, playback_->Heard());
  if (now.length) now.position = std::min(now.position, *now.length);
  return now;
}

void PulsePlayer::Pump() {
  if (!failure_.empty()) return End({PlayerEvent::Kind::Failed, failure_});
  if (phase_ == Phase::Opening) GoOnOpening();
  if (phase_ == Phase::Playing || phase_ == Phase::Draining) WatchProgress(HandOn());
  if (phase_ != Phase::Idle && phase_ != Phase::Waiting) pump_.Start(kPumpEvery);
}

void PulsePlayer::GoOnOpening() {
  const SoundFeed::Sound sound = feed_->Look();
  if (sound.state == SoundFeed::State::Failed) {
    return End({PlayerEvent::Kind::Failed, sound.text + "."});
  }
  const bool read = sound.state == SoundFeed::State::Ready;
  if (read && !connection_) {
    if (sound.lengthSeconds < kLongestSeconds) {
      heard_.length = std::chrono::duration_cast<Milliseconds>(
          std::chrono::duration<double>(sound.lengthSeconds));
    }
    connection_ =
        std::make_unique<PulseConnection>(loop_, static_cast<PulseConnection::Listener&>(*this));
    connection_->Connect();
    return;
  }
  if (HandOn()) {
    phase_ = Phase::Waiting;
    Tell({PlayerEvent::Kind::Ready, sound.text});
  } else if (Now() - since_ > kOpenLimit) {
    End({PlayerEvent::Kind::Failed, read ? kNoAnswerText : kNoDiskText});
  }
}

void PulsePlayer::OnSources(const PulseSources&) {
  if (playback_) return;
  const SoundFeed::Sound sound = feed_->Look();
  playback_ = std::make_unique<PulsePlayback>(connection_->Context(), sound.rateHz, sound.channels,
                                              static_cast<PulsePlayback::Listener&>(*this));
  playback_->Connect();
}

// True when there was something to hand on and place for it.
bool PulsePlayer::HandOn() {
  bool handedOn = false;
  while (playback_) {
    const size_t place = std::min(playback_->Writable(), piece_.size());
    const size_t got = feed_->Take(std::span(piece_).first(place));
    if (got == 0) break;
    playback_->Write(std::span(piece_).first(got));
    handedOn = true;
  }
  if (phase_ == Phase::Playing && feed_->Ended()) {
    phase_ = Phase::Draining;
    playback_->Drain();
  }
  return handedOn;
}

void PulsePlayer::WatchProgress(bool handedOn) {
  if (handedOn) since_ = Now();
  const bool starved = phase_ == Phase::Playing && playback_->Writable() > 0;
  if (Now() - since_ <= (starved ? kDiskLimit : kServerLimit)) return;
  End({PlayerEvent::Kind::Failed, starved ? kNoDiskText : "The sound output stands still."});
}

void PulsePlayer::OnConnectionFailed(const std::string& reason) {
  End({PlayerEvent::Kind::Failed, playback_ ? kServerGoneText : NoServerText(reason)});
}

// A stream that has just failed must not lose its connection before the library is done with it.
void PulsePlayer::OnPlaybackFailed(int error) {
  const bool missing = error == PA_ERR_NOENTITY && phase_ == Phase::Opening;
  failure_ = missing ? "There is no sound output."
                     : std::string("The sound output was lost: ") + pa_strerror(error) + ".";
  pump_.Start(Milliseconds(0));
}

void PulsePlayer::OnPlaybackDrained() {
  if (phase_ != Phase::Draining) return;
  // What was to follow is missing, and a transmitter may be keyed for it.
  if (feed_->BrokenOff()) {
    return End({PlayerEvent::Kind::Failed, "The file ended too early: it cannot be read further."});
  }
  if (heard_.length) heard_.position = *heard_.length;
  End({PlayerEvent::Kind::Drained, ""});
}

// Keeps what was heard.
void PulsePlayer::Drop() {
  if (playback_) heard_.position = std::max(heard_.position, playback_->Heard());
  pump_.Stop();
  phase_ = Phase::Idle;
  failure_.clear();
  playback_.reset();
  connection_.reset();
  feed_.reset();
}

void PulsePlayer::End(PlayerEvent event) {
  Drop();
  Tell(std::move(event));
}

void PulsePlayer::Tell(PlayerEvent event) {
  scheduler_.Post(
      [self = std::weak_ptr(self_), generation = generation_, event = std::move(event)] {
        const auto player = self.lock();
        if (!player || (*player)->generation_ != generation) return;
        (*player)->happened.Raise(event);
      });
}

}  // namespace velt

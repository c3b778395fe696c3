// Sound capture from the user's sound server (PulseAudio, or PipeWire's server for its clients).
#pragma once

#include "adapters/pulse/pulse_stream.h"
#include "adapters/pulse/sample_ring.h"

namespace velt {

// All work with the server happens on libpulse's thread, which writes into the ring and posts
// events. The functions called on the window's thread only leave a wish there.
class PulseInput final : public AudioInput,
                         private PulseConnection::Listener,
                         private PulseStream::Listener {
 public:
  explicit PulseInput(Scheduler& scheduler);  // the scheduler outlives the input
  // Delivers in that format to a sink, from Opened on, and has no blocks to take. The sink outlives
  // the input.
  PulseInput(Scheduler& scheduler, const StreamFormat& format, SampleSink& sink);
  ~PulseInput() override;

  // For the default: where to begin, as if the user had moved its stream there; empty: nowhere.
  void BeginAt(const std::string& source);

  // Known from the first Open or FindDevices on and kept up to date until the server goes.
  std::vector<AudioDevice> Devices() const override;
  void FindDevices() override;
  void Open(const std::string& device) override;
  void Start() override { ring_.Deliver(); }
  TakeResult TakeNewest(std::span<int16_t, kBlockSamples> block) override {
    return ring_.TakeNewest(block);
  }
  void Close() override;
  void WatchForReturn() override;

 private:
  enum class Phase {
    Idle,
    Opening,    // until the stream is ready
    Running,    // a stream writes into the ring
    Verifying,  // the stream has ended; is its source still there?
    Watching,   // trying, again and again, to hear something from the source
  };

  void OnSources(const PulseSources& sources) override;
  void OnConnectionFailed(const std::string& reason) override;
  void OnStreamReady() override;
  void OnStreamFailed(int error) override;
  void OnStreamMoved() override;
  void OnStreamSuspended() override;
  void OnStreamData() override;

  void Begin(Phase phase);       // for a new wish: the events of the one before are dropped
  void EnterPhase(Phase phase);  // one without a stream
  void Try();
  void RetryLater();
  void OnLimit();
  void OpenStream(const PulseSource& source);
  void PickSource();
  void ProbeSource();
  void FinishOpening();
  void FollowStream();
  void NoteChoice();
  void ExpectReturn();
  void VerifyLoss();
  void TellVerifiedLoss(bool sourceIsThere);
  void Drop();  // stream and connection
  void End(AudioEvent::Kind kind, std::string text);
  void EndOnSource(AudioEvent::Kind kind, const std::string& fate);
  void Tell(AudioEvent event);
  bool FollowsDefault() const { return wanted_.empty(); }
  const PulseSource* Wanted() const;  // null: not there

  Scheduler& scheduler_;
  const std::shared_ptr<PulseInput*> self_;  // tells a posted event whether this is still alive
  PulseLoop loop_;
  SampleRing ring_;
  const StreamFormat format_;
  SampleSink& sink_;

  // What follows is touched under the loop's lock.
  uint64_t generation_ = 0;  // of the latest wish; written on the window's thread only
  Phase phase_ = Phase::Idle;
  std::string wanted_;        // name of the source; empty: the system's default
  std::string choice_;        // name of the source that the user has moved the default's stream to
  PulseSource source_;        // what the stream comes from; the name is empty before that
  bool mustGoFirst_ = false;  // the user ended the sound from a source that is still there
  bool sameOnly_ = false;     // while watching for a default: not yet for another than was lost
  Milliseconds pause_{0};     // before the next attempt to connect
  PulseSources known_;
  PulseTimer limit_;
  PulseTimer retry_;
  PulseTimer sameTime_;  // how long the default that was lost has to come back
  std::unique_ptr<PulseConnection> connection_;
  std::unique_ptr<PulseStream> stream_;
};

}  // namespace velt

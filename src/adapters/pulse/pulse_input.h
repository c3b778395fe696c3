// Sound capture from the user's sound server (PulseAudio, or PipeWire's server for its clients).
#pragma once

#include "adapters/pulse/pulse_stream.h"

namespace velt {

// All work with the server happens on libpulse's thread, which writes into the ring and posts
// events. The functions called on the window's thread only leave a wish there.
class PulseInput final : public AudioInput,
                         private PulseConnection::Listener,
                         private PulseStream::Listener {
 public:
  explicit PulseInput(Scheduler& scheduler);  // the scheduler outlives the input
  ~PulseInput() override;

  // Known from the first Open on and kept up to date until the server goes.
  std::vector<AudioDevice> Devices() const override;
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
  void VerifyLoss(const std::string& movedTo);
  void TellVerifiedLoss(bool sourceIsThere);
  void Drop();  // stream and connection
  void End(AudioEvent::Kind kind, std::string text);
  void EndOnSource(AudioEvent::Kind kind, const std::string& fate);
  void Tell(AudioEvent::Kind kind, std::string text);
  const PulseSource* Wanted() const;  // null: not there

  Scheduler& scheduler_;
  const std::shared_ptr<PulseInput*> self_;  // tells a posted event whether this is still alive
  PulseLoop loop_;
  SampleRing ring_;

  // What follows is touched under the loop's lock.
  uint64_t generation_ = 0;  // of the latest wish; written on the window's thread only
  Phase phase_ = Phase::Idle;
  std::string wanted_;        // name of the source; empty: the default one, until that is known
  PulseSource source_;        // what the stream was opened on; the name is empty before that
  std::string movedTo_;       // while verifying: where the stream went, empty when it was ended
  bool mustGoFirst_ = false;  // the user took the sound away from a source that is still there
  Milliseconds pause_{0};     // before the next attempt to connect
  PulseSources known_;
  PulseTimer limit_;
  PulseTimer retry_;
  std::unique_ptr<PulseConnection> connection_;
  std::unique_ptr<PulseStream> stream_;
};

}  // namespace velt

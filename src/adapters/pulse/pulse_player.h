// Plays sound files through the user's sound server.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "adapters/pulse/pulse_connection.h"
#include "adapters/pulse/pulse_playback.h"
#include "adapters/pulse/sound_feed.h"
#include "ports/sound_player.h"

namespace velt {

// A thread of its own reads each file; all work with the server happens on libpulse's thread, which
// hands on what was read and posts events. The functions called on the window's thread only leave
// a wish there.
class PulsePlayer final : public SoundPlayer,
                          private PulseConnection::Listener,
                          private PulsePlayback::Listener {
 public:
  // `makeSound` makes what reads a file; the scheduler outlives the player.
  PulsePlayer(Scheduler& scheduler, std::function<std::unique_ptr<PlayedSound>()> makeSound);
  ~PulsePlayer() override;

  void Prepare(const std::filesystem::path& file) override;
  void Start() override;
  void Stop() override;
  Progress Heard() const override;

 private:
  enum class Phase {
    Idle,
    Opening,   // the file, the connection and the stream
    Waiting,   // for Start
    Playing,   // the feed is handed on to the stream
    Draining,  // all of it was handed on
  };

  void OnSources(const PulseSources& sources) override;
  void OnConnectionFailed(const std::string& reason) override;
  void OnPlaybackFailed(int error) override;
  void OnPlaybackDrained() override;

  void Pump();
  void GoOnOpening();
  bool HandOn();
  void WatchProgress(bool handedOn);
  void Drop();
  void End(PlayerEvent event);
  void Tell(PlayerEvent event);

  Scheduler& scheduler_;
  const std::function<std::unique_ptr<PlayedSound>()> makeSound_;
  const std::shared_ptr<PulsePlayer*> self_;  // tells a posted event whether this is still alive
  PulseLoop loop_;

  // What follows is touched under the loop's lock.
  uint64_t generation_ = 0;  // of the latest wish; written on the window's thread only
  Phase phase_ = Phase::Idle;
  SteadyTime since_;     // it last went on
  Progress heard_;       // without a playback, of the last one
  std::string failure_;  // of the playback, not yet told
  std::vector<float> piece_;
  std::unique_ptr<SoundFeed> feed_;
  PulseTimer pump_;
  std::unique_ptr<PulseConnection> connection_;
  std::unique_ptr<PulsePlayback> playback_;
};

}  // namespace velt

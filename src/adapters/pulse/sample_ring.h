// What the sound thread writes and the window's thread takes: the newest samples.
#pragma once

#include <array>
#include <mutex>

#include "adapters/pulse/sample_sink.h"
#include "ports/audio_input.h"

namespace velt {

// Every function may be called from any thread; none allocates.
class SampleRing final : public SampleSink {
 public:
  void Close() { Enter(State::Closed); }  // TakeNewest answers Gone
  void Hold() { Enter(State::Held); }     // TakeNewest answers NotYet, what is written is dropped
  void Deliver();                         // from now on; only a held ring can

  void Write(std::span<const int16_t> samples) override;
  void WriteSilence(size_t count) override;

  // As AudioInput::TakeNewest.
  TakeResult TakeNewest(std::span<int16_t, kBlockSamples> block);

 private:
  enum class State { Closed, Held, Delivering };

  void Enter(State state);
  void Append(int16_t sample) { samples_[written_++ % kBlockSamples] = sample; }

  std::mutex mutex_;
  State state_ = State::Closed;
  std::array<int16_t, kBlockSamples> samples_{};  // no more than one block is ever taken
  uint64_t written_ = 0;
  uint64_t taken_ = 0;
};

}  // namespace velt

// One playback stream to the user's default sink.
#pragma once

#include <pulse/stream.h>

#include <span>

#include "ports/scheduler.h"

namespace velt {

// Used and destroyed under the loop's lock, before the connection it was made on.
class PulsePlayback {
 public:
  // Called on the loop's thread.
  class Listener {
   public:
    // With a libpulse error code. Neither the playback nor its connection may be destroyed within.
    virtual void OnPlaybackFailed(int error) = 0;
    virtual void OnPlaybackDrained() = 0;  // all that was written was heard

   protected:
    ~Listener() = default;
  };

  // At a rate that is none of the server's OnPlaybackFailed follows Connect.
  PulsePlayback(pa_context& context, int32_t rateHz, int32_t channels, Listener& listener);
  ~PulsePlayback();
  PulsePlayback(const PulsePlayback&) = delete;
  PulsePlayback& operator=(const PulsePlayback&) = delete;

  // Nothing is heard before Start. May call OnPlaybackFailed before it returns.
  void Connect();
  void Start();

  size_t Writable() const;  // values, whole frames; 0 until it is open
  void Write(std::span<const float> values);
  void Drain();  // after the last Write

  Milliseconds Heard() const;

 private:
  void StateChanged();

  Listener& listener_;
  pa_sample_spec format_;
  pa_stream* stream_;
  uint64_t written_ = 0;  // bytes
};

}  // namespace velt

// One capture stream from one source into the ring.
#pragma once

#include <pulse/stream.h>

#include "adapters/pulse/pulse_connection.h"
#include "adapters/pulse/sample_ring.h"

namespace velt {

// Used and destroyed under the loop's lock, before the connection it was made on.
class PulseStream {
 public:
  // Called on the loop's thread. The stream may be destroyed within each call.
  class Listener {
   public:
    virtual void OnStreamReady() = 0;
    virtual void OnStreamFailed(int error) = 0;  // a libpulse error code
    virtual void OnStreamMoved() = 0;            // it goes on with another source
    virtual void OnStreamSuspended() = 0;
    virtual void OnStreamData() = 0;  // samples were written into the ring

   protected:
    ~Listener() = default;
  };

  PulseStream(pa_context& context, SampleRing& ring, Listener& listener);
  ~PulseStream();
  PulseStream(const PulseStream&) = delete;
  PulseStream& operator=(const PulseStream&) = delete;

  // May call OnStreamFailed before it returns.
  void Connect(const PulseSource& source);

  bool Suspended() const { return pa_stream_is_suspended(stream_) == 1; }
  std::string SourceName() const;  // of an opened stream: where it really comes from

 private:
  void StateChanged();
  void Read();

  SampleRing& ring_;
  Listener& listener_;
  pa_stream* stream_;
};

}  // namespace velt

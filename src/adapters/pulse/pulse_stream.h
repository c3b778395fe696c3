// One capture stream from one source into a sink.
#pragma once

#include <pulse/stream.h>

#include "adapters/pulse/pulse_connection.h"
#include "adapters/pulse/sample_sink.h"

namespace velt {

// What the server is asked for: 16-bit samples of each channel in turns.
struct StreamFormat {
  const char* name;  // for people, in the volume control
  uint32_t rateHz;
  uint8_t channels;
  uint32_t fragmentBytes;  // delivered at a time
  uint32_t backlogBytes;   // kept by the server while nobody takes them
};

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
    virtual void OnStreamData() = 0;  // samples were written into the sink

   protected:
    ~Listener() = default;
  };

  PulseStream(pa_context& context, const StreamFormat& format, SampleSink& sink,
              Listener& listener);
  ~PulseStream();
  PulseStream(const PulseStream&) = delete;
  PulseStream& operator=(const PulseStream&) = delete;

  enum class Choice {
    Pinned,  // this source and no other: the stream ends with it
    First,   // this source at first, then wherever the server or the user moves it
    Server,  // wherever the server finds right: where the user put it before, the default source
  };
  // May call OnStreamFailed before it returns.
  void Connect(const std::string& source, Choice choice);

  bool Suspended() const { return pa_stream_is_suspended(stream_) == 1; }
  std::string SourceName() const;  // where it really comes from; empty while it is not open

 private:
  void StateChanged();
  void Read();

  const StreamFormat format_;
  SampleSink& sink_;
  Listener& listener_;
  pa_stream* stream_;
};

}  // namespace velt

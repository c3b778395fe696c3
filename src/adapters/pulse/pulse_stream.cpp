#include "adapters/pulse/pulse_stream.h"

#include <new>

namespace velt {
namespace {

constexpr uint32_t kFragmentBytes = 1024;                // half a block, 12 ms
constexpr uint32_t kServerBacklogBytes = kSampleRateHz;  // half a second

PulseStream::Listener& ListenerOf(void* listener) {
  return *static_cast<PulseStream::Listener*>(listener);
}

}  // namespace

PulseStream::PulseStream(pa_context& context, SampleRing& ring, Listener& listener)
    : ring_(ring), listener_(listener) {
  constexpr pa_sample_spec format = {PA_SAMPLE_S16LE, kSampleRateHz, 1};
  stream_ = pa_stream_new(&context, "VELT-SA", &format, nullptr);
  if (!stream_) throw std::bad_alloc();
  pa_stream_set_state_callback(
      stream_, [](pa_stream*, void* self) { static_cast<PulseStream*>(self)->StateChanged(); },
      this);
  pa_stream_set_read_callback(
      stream_, [](pa_stream*, size_t, void* self) { static_cast<PulseStream*>(self)->Read(); },
      this);
  pa_stream_set_moved_callback(
      stream_, [](pa_stream*, void* l) { ListenerOf(l).OnStreamMoved(); }, &listener_);
  const auto suspendedOrResumed = [](pa_stream* stream, void* l) {
    if (pa_stream_is_suspended(stream) == 1) ListenerOf(l).OnStreamSuspended();
  };
  pa_stream_set_suspended_callback(stream_, suspendedOrResumed, &listener_);
}

PulseStream::~PulseStream() {
  pa_stream_set_read_callback(stream_, nullptr, nullptr);
  pa_stream_set_moved_callback(stream_, nullptr, nullptr);
  pa_stream_set_suspended_callback(stream_, nullptr, nullptr);
  // What the server is still making can only be given back once it is there; until then the
  // context keeps it.
  const auto giveBack = [](pa_stream* stream, void*) {
    if (pa_stream_get_state(stream) == PA_STREAM_READY) pa_stream_disconnect(stream);
  };
  const bool unfinished = pa_stream_get_state(stream_) == PA_STREAM_CREATING;
  pa_stream_set_state_callback(stream_, unfinished ? +giveBack : nullptr, nullptr);
  if (!unfinished) pa_stream_disconnect(stream_);
  pa_stream_unref(stream_);
}

void PulseStream::Connect(const PulseSource& source) {
  pa_buffer_attr buffer{};
  buffer.maxlength = kServerBacklogBytes;
  buffer.fragsize = kFragmentBytes;
  // Moving is allowed: without it the stream could not tell a source that went away from a user
  // who wants the sound elsewhere.
  if (pa_stream_connect_record(stream_, source.name.c_str(), &buffer, PA_STREAM_ADJUST_LATENCY) <
      0) {
    listener_.OnStreamFailed(pa_context_errno(pa_stream_get_context(stream_)));
  }
}

std::string PulseStream::SourceName() const {
  const char* name = pa_stream_get_device_name(stream_);
  return name ? name : "";
}

void PulseStream::StateChanged() {
  const pa_stream_state_t state = pa_stream_get_state(stream_);
  if (state == PA_STREAM_READY) {
    listener_.OnStreamReady();
  } else if (state == PA_STREAM_FAILED || state == PA_STREAM_TERMINATED) {
    listener_.OnStreamFailed(pa_context_errno(pa_stream_get_context(stream_)));
  }
}

void PulseStream::Read() {
  const void* data = nullptr;
  size_t bytes = 0;
  while (pa_stream_peek(stream_, &data, &bytes) == 0 && bytes > 0) {
    if (data) {
      ring_.Write({static_cast<const int16_t*>(data), bytes / sizeof(int16_t)});
    } else {
      ring_.WriteSilence(bytes / sizeof(int16_t));  // a hole: the server had nothing for that time
    }
    pa_stream_drop(stream_);
  }
  listener_.OnStreamData();
}

}  // namespace velt

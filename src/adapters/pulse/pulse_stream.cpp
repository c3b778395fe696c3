#include "adapters/pulse/pulse_stream.h"

#include <pulse/proplist.h>

#include <memory>
#include <new>

#include "adapters/pulse/give_back.h"

namespace velt {
namespace {

PulseStream::Listener& ListenerOf(void* listener) {
  return *static_cast<PulseStream::Listener*>(listener);
}

}  // namespace

PulseStream::PulseStream(pa_context& context, const StreamFormat& format, SampleSink& sink,
                         Listener& listener)
    : format_(format), sink_(sink), listener_(listener) {
  const pa_sample_spec samples = {PA_SAMPLE_S16LE, format.rateHz, format.channels};
  const std::unique_ptr<pa_proplist, decltype(&pa_proplist_free)> properties(pa_proplist_new(),
                                                                             pa_proplist_free);
  if (!properties) throw std::bad_alloc();
  // PipeWire would add the channels up otherwise, and clip what is loud on both; PulseAudio
  // averages anyway.
  pa_proplist_sets(properties.get(), "channelmix.normalize", "true");
  stream_ = pa_stream_new_with_proplist(&context, format.name, &samples, nullptr, properties.get());
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
  GiveBack(*stream_);
}

void PulseStream::Connect(const std::string& source, Choice choice) {
  pa_buffer_attr buffer{};
  buffer.maxlength = format_.backlogBytes;
  buffer.fragsize = format_.fragmentBytes;
  const char* device = choice == Choice::Server ? nullptr : source.c_str();
  const auto flags = static_cast<pa_stream_flags_t>(
      PA_STREAM_ADJUST_LATENCY |
      (choice == Choice::Pinned ? PA_STREAM_DONT_MOVE : PA_STREAM_NOFLAGS));
  if (pa_stream_connect_record(stream_, device, &buffer, flags) < 0) {
    listener_.OnStreamFailed(pa_context_errno(pa_stream_get_context(stream_)));
  }
}

std::string PulseStream::SourceName() const {
  const bool open = pa_stream_get_state(stream_) == PA_STREAM_READY;
  const char* name = open ? pa_stream_get_device_name(stream_) : nullptr;
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
      sink_.Write({static_cast<const int16_t*>(data), bytes / sizeof(int16_t)});
    } else {
      sink_.WriteSilence(bytes / sizeof(int16_t));  // a hole: the server had nothing for that time
    }
    pa_stream_drop(stream_);
  }
  listener_.OnStreamData();
}

}  // namespace velt

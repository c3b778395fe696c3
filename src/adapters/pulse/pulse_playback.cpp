#include "adapters/pulse/pulse_playback.h"

#include <pulse/context.h>
#include <pulse/error.h>
#include <pulse/operation.h>

#include <algorithm>

#include "adapters/pulse/give_back.h"

namespace velt {
namespace {

// What the server holds: enough for a busy machine, and all of it is dropped at a stop.
constexpr pa_usec_t kServerBufferUs = 400'000;

PulsePlayback::Listener& ListenerOf(void* listener) {
  return *static_cast<PulsePlayback::Listener*>(listener);
}

void Forget(pa_operation* operation) {
  if (operation) pa_operation_unref(operation);
}

}  // namespace

PulsePlayback::PulsePlayback(pa_context& context, int32_t rateHz, int32_t channels,
                             Listener& listener)
    : listener_(listener),
      format_{PA_SAMPLE_FLOAT32NE, static_cast<uint32_t>(rateHz), static_cast<uint8_t>(channels)},
      stream_(pa_stream_new(&context, "VELT-SA player", &format_, nullptr)) {
  if (!stream_) return;
  pa_stream_set_state_callback(
      stream_, [](pa_stream*, void* self) { static_cast<PulsePlayback*>(self)->StateChanged(); },
      this);
}

PulsePlayback::~PulsePlayback() {
  if (stream_) GiveBack(*stream_);
}

void PulsePlayback::Connect() {
  if (!stream_) return listener_.OnPlaybackFailed(PA_ERR_INVALID);
  pa_buffer_attr buffer{};
  buffer.maxlength = buffer.minreq = static_cast<uint32_t>(-1);
  buffer.tlength = static_cast<uint32_t>(pa_usec_to_bytes(kServerBufferUs, &format_));
  buffer.prebuf = 0;
  constexpr auto flags =
      static_cast<pa_stream_flags_t>(PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY |
                                     PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE);
  if (pa_stream_connect_playback(stream_, nullptr, &buffer, flags, nullptr, nullptr) < 0) {
    listener_.OnPlaybackFailed(pa_context_errno(pa_stream_get_context(stream_)));
  }
}

void PulsePlayback::Start() {
  Forget(pa_stream_cork(stream_, 0, nullptr, nullptr));
}

size_t PulsePlayback::Writable() const {
  if (!stream_ || pa_stream_get_state(stream_) != PA_STREAM_READY) return 0;
  const size_t bytes = pa_stream_writable_size(stream_);
  return bytes == static_cast<size_t>(-1) ? 0 : bytes / pa_frame_size(&format_) * format_.channels;
}

void PulsePlayback::Write(std::span<const float> values) {
  pa_stream_write(stream_, values.data(), values.size_bytes(), nullptr, 0, PA_SEEK_RELATIVE);
  written_ += values.size_bytes();
}

void PulsePlayback::Drain() {
  const auto drained = [](pa_stream*, int success, void* l) {
    if (success) ListenerOf(l).OnPlaybackDrained();
  };
  Forget(pa_stream_drain(stream_, drained, &listener_));
}

Milliseconds PulsePlayback::Heard() const {
  pa_usec_t heard = 0;
  if (!stream_ || pa_stream_get_time(stream_, &heard) < 0) return Milliseconds(0);
  heard = std::min(heard, pa_bytes_to_usec(written_, &format_));
  return std::chrono::duration_cast<Milliseconds>(std::chrono::microseconds(heard));
}

void PulsePlayback::StateChanged() {
  const pa_stream_state_t state = pa_stream_get_state(stream_);
  if (state == PA_STREAM_FAILED || state == PA_STREAM_TERMINATED) {
    listener_.OnPlaybackFailed(pa_context_errno(pa_stream_get_context(stream_)));
  }
}

}  // namespace velt

#include "adapters/pulse/pulse_loop.h"

#include <pulse/timeval.h>

#include <stdexcept>

namespace velt {

PulseLoop::Lock::Lock(const PulseLoop& loop) : loop_(loop.loop_) {
  pa_threaded_mainloop_lock(loop_);
}

PulseLoop::Lock::~Lock() {
  pa_threaded_mainloop_unlock(loop_);
}

PulseLoop::PulseLoop() : loop_(pa_threaded_mainloop_new()) {
  if (loop_ && pa_threaded_mainloop_start(loop_) >= 0) return;
  if (loop_) pa_threaded_mainloop_free(loop_);
  throw std::runtime_error("no thread for the sound server");
}

PulseLoop::~PulseLoop() {
  pa_threaded_mainloop_stop(loop_);
  pa_threaded_mainloop_free(loop_);
}

PulseTimer::PulseTimer(const PulseLoop& loop, std::function<void()> onDue)
    : api_(loop.Api()), onDue_(std::move(onDue)) {}

PulseTimer::~PulseTimer() {
  Stop();
}

void PulseTimer::Start(Milliseconds delay) {
  Stop();
  // The loop turns this time of day into its steady time at once: a clock that is set later on
  // changes nothing.
  timeval due;
  pa_timeval_add(pa_gettimeofday(&due), static_cast<pa_usec_t>(delay.count()) * PA_USEC_PER_MSEC);
  const auto callback = [](pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
    PulseTimer& timer = *static_cast<PulseTimer*>(self);
    timer.Stop();
    timer.onDue_();
  };
  event_ = api_.time_new(&api_, &due, callback, this);
}

void PulseTimer::Stop() {
  if (event_) api_.time_free(event_);
  event_ = nullptr;
}

}  // namespace velt

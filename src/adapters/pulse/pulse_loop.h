// libpulse's own thread, its lock and timers on it.
#pragma once

#include <pulse/thread-mainloop.h>

#include <chrono>
#include <functional>
#include <memory>

#include "ports/scheduler.h"

namespace velt {

// Runs the thread as long as it lives. The thread never waits for anything but its sockets and
// timers, so that neither the lock nor the end of it is held up by a server.
class PulseLoop {
 public:
  // Everything of libpulse is touched under this lock, or from a call-back on the loop's thread,
  // which holds it already.
  class Lock {
   public:
    explicit Lock(const PulseLoop& loop);
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

   private:
    pa_threaded_mainloop* loop_;
  };

  PulseLoop();  // throws std::runtime_error when the system has no thread left
  ~PulseLoop();
  PulseLoop(const PulseLoop&) = delete;
  PulseLoop& operator=(const PulseLoop&) = delete;

  pa_mainloop_api& Api() const { return *pa_threaded_mainloop_get_api(loop_); }

 private:
  pa_threaded_mainloop* loop_;
};

// Calls onDue once on the loop's thread, unless stopped before. Used and destroyed under the lock.
class PulseTimer {
 public:
  PulseTimer(const PulseLoop& loop, std::function<void()> onDue);
  ~PulseTimer();
  PulseTimer(const PulseTimer&) = delete;
  PulseTimer& operator=(const PulseTimer&) = delete;

  void Start(Milliseconds delay);  // starts anew when it is running
  void Stop();
  bool Running() const { return event_ != nullptr; }

 private:
  pa_mainloop_api& api_;
  std::function<void()> onDue_;
  pa_time_event* event_ = nullptr;
};

}  // namespace velt

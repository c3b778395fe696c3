// The event loop as the program sees it: steady time, "later on the loop", "after a while".
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace velt {

using Milliseconds = std::chrono::milliseconds;
using SteadyTime = std::chrono::steady_clock::time_point;

class Scheduler {
 public:
  // Owns a pending continuation: destroying or resetting it cancels. An empty handle owns nothing.
  class Handle {
   public:
    Handle() = default;
    explicit Handle(std::shared_ptr<void> alive) : alive_(std::move(alive)) {}
    void Cancel() { alive_.reset(); }

   private:
    std::shared_ptr<void> alive_;
  };

  virtual ~Scheduler() = default;
  virtual SteadyTime Now() const = 0;

  // Runs f on the window's thread in a later turn of the loop. May be called from any thread.
  virtual void Post(std::function<void()> f) = 0;

  // Runs f on the window's thread after at least `delay`, unless the handle was dropped before.
  // Only from the window's thread.
  [[nodiscard]] virtual Handle After(Milliseconds delay, std::function<void()> f) = 0;
};

}  // namespace velt

// A scheduler whose time stands still until a test advances it.
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "ports/scheduler.h"

namespace velt {

class VirtualScheduler : public Scheduler {
 public:
  SteadyTime Now() const override { return now_; }

  void Post(std::function<void()> f) override {
    const std::lock_guard lock(mutex_);
    posted_.push_back(std::move(f));
  }

  Handle After(Milliseconds delay, std::function<void()> f) override {
    auto alive = std::make_shared<std::function<void()>>(std::move(f));
    timed_.emplace(now_ + delay, alive);
    return Handle(std::move(alive));
  }

  // Runs what was posted until nothing is left.
  void RunPosted() {
    for (;;) {
      std::vector<std::function<void()>> batch;
      {
        const std::lock_guard lock(mutex_);
        batch.swap(posted_);
      }
      if (batch.empty()) return;
      for (auto& f : batch) f();
    }
  }

  // Time passes without anything running, as while a handler takes long.
  void Pass(Milliseconds span) { now_ += span; }

  // Lets time pass; everything due runs in order, what is posted meanwhile too.
  void Advance(Milliseconds span) {
    const SteadyTime end = now_ + span;
    RunPosted();
    while (!timed_.empty() && timed_.begin()->first <= end) {
      const auto next = timed_.extract(timed_.begin());
      now_ = std::max(now_, next.key());
      if (const auto alive = next.mapped().lock()) {
        const auto run = std::move(*alive);
        run();
      }
      RunPosted();
    }
    now_ = std::max(now_, end);
  }

 private:
  SteadyTime now_ = SteadyTime() + std::chrono::hours(1);
  std::multimap<SteadyTime, std::weak_ptr<std::function<void()>>> timed_;  // those due first, first
  std::mutex mutex_;
  std::vector<std::function<void()>> posted_;
};

}  // namespace velt

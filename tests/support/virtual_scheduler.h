// A scheduler whose time stands still until a test advances it.
#pragma once

#include <algorithm>
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
    timed_.push_back({now_ + delay, ++order_, alive});
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
    for (;;) {
      std::erase_if(timed_, [](const Timed& t) { return t.f.expired(); });
      const auto next = std::min_element(timed_.begin(), timed_.end());
      if (next == timed_.end() || next->due > end) break;
      now_ = std::max(now_, next->due);
      const auto alive = next->f.lock();
      timed_.erase(next);
      if (alive) {
        const auto run = std::move(*alive);
        run();
      }
      RunPosted();
    }
    now_ = std::max(now_, end);
  }

 private:
  struct Timed {
    SteadyTime due;
    uint64_t order;
    std::weak_ptr<std::function<void()>> f;
    bool operator<(const Timed& other) const {
      return due != other.due ? due < other.due : order < other.order;
    }
  };

  SteadyTime now_ = SteadyTime() + std::chrono::hours(1);
  uint64_t order_ = 0;
  std::vector<Timed> timed_;
  std::mutex mutex_;
  std::vector<std::function<void()>> posted_;
};

}  // namespace velt

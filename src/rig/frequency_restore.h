// Puts something back a while after transmitting: armed once, it tries when it is due and, as long
// as the try cannot be made, again after the same while.
#pragma once

#include <functional>
#include <utility>

#include "ports/scheduler.h"

namespace velt {

class FrequencyRestore {
 public:
  static constexpr Milliseconds kDelay{1100};

  explicit FrequencyRestore(Scheduler& scheduler) : scheduler_(scheduler) {}

  // `attempt` tells whether it could act. Arming again starts the while anew.
  void Arm(std::function<bool()> attempt) {
    attempt_ = std::move(attempt);
    late_ = false;
    Wait();
  }
  void Disarm() {
    due_.Cancel();
    attempt_ = nullptr;
    late_ = false;
  }
  bool Armed() const { return attempt_ != nullptr; }
  // It was due already, but could not act yet.
  bool Late() const { return late_; }

 private:
  void Wait() {
    due_ = scheduler_.After(kDelay, [this] { Try(); });
  }
  void Try() {
    if (attempt_()) return Disarm();
    late_ = true;
    Wait();
  }

  Scheduler& scheduler_;
  Scheduler::Handle due_;
  std::function<bool()> attempt_;
  bool late_ = false;
};

}  // namespace velt

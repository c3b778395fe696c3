#include "adapters/qt/qt_scheduler.h"

#include <QMetaObject>
#include <algorithm>
#include <limits>

namespace velt {
namespace {

// Qt's longest; what is due later is waited for again.
constexpr Milliseconds kLongest{std::numeric_limits<int>::max()};

}  // namespace

SteadyTime QtScheduler::Now() const {
  return std::chrono::steady_clock::now();
}

void QtScheduler::Post(std::function<void()> f) {
  QMetaObject::invokeMethod(this, std::move(f), Qt::QueuedConnection);
}

Scheduler::Handle QtScheduler::After(Milliseconds delay, std::function<void()> f) {
  auto run = std::make_shared<std::function<void()>>(std::move(f));
  const SteadyTime due = Now() + delay;
  const auto place = std::ranges::upper_bound(pending_, due, {}, &Pending::due);
  pending_.insert(place, {due, run});
  if (!running_) Arm();
  return Handle(std::move(run));
}

void QtScheduler::timerEvent(QTimerEvent*) {
  // What is asked for meanwhile has its turn later.
  const SteadyTime now = Now();
  fires_ += period_;
  running_ = true;
  while (!pending_.empty() && pending_.front().due <= now) {
    const auto pending = pending_.front().run.lock();
    pending_.erase(pending_.begin());
    if (!pending) continue;
    const auto run = std::move(*pending);
    run();
  }
  running_ = false;
  Arm();
}

void QtScheduler::Arm() {
  while (!pending_.empty() && pending_.front().run.expired()) pending_.erase(pending_.begin());
  if (pending_.empty()) {
    timer_.stop();
    return;
  }
  const SteadyTime due = pending_.front().due;
  const SteadyTime now = Now();
  // Something that comes back with the same period finds the timer running as it needs it.
  if (timer_.isActive() && fires_ > now && fires_ >= due && fires_ - due < Milliseconds(1)) return;
  period_ = std::clamp(std::chrono::ceil<Milliseconds>(due - now), Milliseconds(0), kLongest);
  fires_ = now + period_;
  timer_.start(static_cast<int>(period_.count()), Qt::PreciseTimer, this);
}

}  // namespace velt

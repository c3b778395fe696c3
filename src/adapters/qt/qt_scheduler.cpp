#include "adapters/qt/qt_scheduler.h"

#include <QMetaObject>
#include <QTimer>

namespace velt {

SteadyTime QtScheduler::Now() const {
  return std::chrono::steady_clock::now();
}

void QtScheduler::Post(std::function<void()> f) {
  QMetaObject::invokeMethod(&context_, std::move(f), Qt::QueuedConnection);
}

Scheduler::Handle QtScheduler::After(Milliseconds delay, std::function<void()> f) {
  // The timer belongs to the handle, so a dropped handle leaves nothing behind. Its copy that the
  // running continuation holds keeps it alive when the continuation drops its own handle.
  struct Pending {
    QTimer timer;
    std::function<void()> f;
  };
  auto pending = std::shared_ptr<Pending>(new Pending, [](Pending* p) {
    p->timer.stop();
    p->timer.disconnect();
    delete p;
  });
  pending->f = std::move(f);
  pending->timer.setSingleShot(true);
  pending->timer.setTimerType(Qt::PreciseTimer);
  std::weak_ptr<Pending> weak = pending;
  QObject::connect(&pending->timer, &QTimer::timeout, &context_, [weak] {
    if (const auto alive = weak.lock()) {
      const auto run = std::move(alive->f);
      run();
    }
  });
  pending->timer.start(delay);
  return Handle(std::move(pending));
}

}  // namespace velt

#include "adapters/qt/qt_scheduler.h"

#include <QMetaObject>
#include <QPointer>
#include <QTimer>

namespace velt {

SteadyTime QtScheduler::Now() const {
  return std::chrono::steady_clock::now();
}

void QtScheduler::Post(std::function<void()> f) {
  QMetaObject::invokeMethod(&context_, std::move(f), Qt::QueuedConnection);
}

Scheduler::Handle QtScheduler::After(Milliseconds delay, std::function<void()> f) {
  // The timer lives as long as the handle. Deleting is left to the loop, as a continuation may drop
  // its own handle while the timer is still delivering it.
  struct Pending {
    QPointer<QTimer> timer;
    std::function<void()> f;
    ~Pending() {
      if (!timer) return;
      timer->stop();
      timer->disconnect();
      timer->deleteLater();
    }
  };
  auto pending = std::make_shared<Pending>();
  pending->f = std::move(f);
  pending->timer = new QTimer(&context_);
  pending->timer->setSingleShot(true);
  pending->timer->setTimerType(Qt::PreciseTimer);
  std::weak_ptr<Pending> weak = pending;
  QObject::connect(pending->timer, &QTimer::timeout, &context_, [weak] {
    if (const auto alive = weak.lock()) {
      const auto run = std::move(alive->f);
      run();
    }
  });
  pending->timer->start(delay);
  return Handle(std::move(pending));
}

}  // namespace velt

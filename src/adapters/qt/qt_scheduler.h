// The scheduler over Qt's event loop of the thread that made it. All that is pending shares one
// timer.
#pragma once

#include <QBasicTimer>
#include <QObject>
#include <vector>

#include "ports/scheduler.h"

namespace velt {

class QtScheduler : public Scheduler, private QObject {
 public:
  SteadyTime Now() const override;
  void Post(std::function<void()> f) override;
  Handle After(Milliseconds delay, std::function<void()> f) override;

 private:
  struct Pending {
    SteadyTime due;
    std::weak_ptr<std::function<void()>> run;
  };

  void timerEvent(QTimerEvent* event) override;
  // Lets the timer fire when the first of those pending is due.
  void Arm();

  std::vector<Pending> pending_;  // the first due first, equal ones as they were asked for
  QBasicTimer timer_;
  Milliseconds period_{0};
  SteadyTime fires_{};  // the timer, next
  bool running_ = false;
};

}  // namespace velt

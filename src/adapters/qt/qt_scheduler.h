// The scheduler over Qt's event loop of the thread that made it.
#pragma once

#include <QObject>

#include "ports/scheduler.h"

namespace velt {

class QtScheduler : public Scheduler {
 public:
  SteadyTime Now() const override;
  void Post(std::function<void()> f) override;
  Handle After(Milliseconds delay, std::function<void()> f) override;

 private:
  QObject context_;
};

}  // namespace velt

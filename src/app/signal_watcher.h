// Turns the signals that ask a program to end into a call on the event loop.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>

namespace velt {

class SignalWatcher : public QObject {
 public:
  // Watches SIGTERM, SIGINT and SIGHUP. One watcher at a time.
  explicit SignalWatcher(std::function<void()> asked);
  ~SignalWatcher() override;

 private:
  std::function<void()> asked_;
  int readEnd_ = -1;
  QSocketNotifier* notifier_ = nullptr;
};

}  // namespace velt

// The sleep lock of systemd's login manager. Without a system bus or a login manager nothing
// happens but a line in the log.
#pragma once

#include <QObject>
#include <QThread>
#include <memory>

#include "adapters/logind/logind_caller.h"
#include "ports/log.h"
#include "ports/sleep_lock.h"

namespace velt {

class LogindSleepLock : public SleepLock {
 public:
  explicit LogindSleepLock(Log& log) : log_(log) {}
  ~LogindSleepLock() override;

  void Hold() override;
  void LetGo() override;

 private:
  // A bus that does not answer is left alone after this when the program ends.
  static constexpr unsigned long kEndLimitMs = 300;

  void Start();

  Log& log_;
  QObject here_;                     // what is told arrives in its thread
  std::unique_ptr<QThread> thread_;  // from the first Hold on
  LogindCaller* caller_ = nullptr;   // lives and is deleted there
};

}  // namespace velt

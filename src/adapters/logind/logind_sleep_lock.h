// The sleep lock of systemd's login manager. Without a system bus or a login manager nothing
// happens but a line in the log.
#pragma once

#include <systemd/sd-bus.h>

#include <QSocketNotifier>
#include <memory>

#include "ports/log.h"
#include "ports/scheduler.h"
#include "ports/sleep_lock.h"

namespace velt {

class LogindSleepLock : public SleepLock {
 public:
  LogindSleepLock(Scheduler& scheduler, Log& log) : scheduler_(scheduler), log_(log) {}
  ~LogindSleepLock() override;

  void Hold() override;
  void LetGo() override;

 private:
  static int Answered(sd_bus_message* answer, void* self, sd_bus_error*);
  static int PreparesForSleep(sd_bus_message* signal, void* self, sd_bus_error*);

  int Connect();  // negative: the system's error number
  int Ask();      // the same
  void Take(sd_bus_message& answer);
  void Process();
  void Watch();
  void Lost(int error);
  void Disconnect();
  void CloseLock();
  void Tell(const char* why);

  Scheduler& scheduler_;
  Log& log_;
  sd_bus* bus_ = nullptr;  // from the first Hold on, until it fails
  std::unique_ptr<QSocketNotifier> readable_;
  std::unique_ptr<QSocketNotifier> writable_;
  Scheduler::Handle timeout_;
  Scheduler::Handle disconnecting_;
  int lock_ = -1;  // a descriptor; the lock is let go when it is closed
  bool wanted_ = false;
  bool asking_ = false;
  bool lost_ = false;  // the bus, which is about to be taken down
};

}  // namespace velt

#include "adapters/logind/logind_sleep_lock.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace velt {
namespace {

constexpr const char* kService = "org.freedesktop.login1";
constexpr const char* kPath = "/org/freedesktop/login1";
constexpr const char* kInterface = "org.freedesktop.login1.Manager";
constexpr uint64_t kNever = UINT64_MAX;

}  // namespace

LogindSleepLock::~LogindSleepLock() {
  Disconnect();
  CloseLock();
}

void LogindSleepLock::Hold() {
  wanted_ = true;
  if (lock_ >= 0 || asking_) return;
  if (lost_) Disconnect();
  int error = bus_ == nullptr ? Connect() : 0;
  if (error >= 0) error = Ask();
  if (error < 0) {
    Tell(std::strerror(-error));
    return Disconnect();
  }
  asking_ = true;
  Watch();
}

void LogindSleepLock::LetGo() {
  wanted_ = false;
  CloseLock();
}

int LogindSleepLock::Answered(sd_bus_message* answer, void* self, sd_bus_error*) {
  static_cast<LogindSleepLock*>(self)->Take(*answer);
  return 0;
}

int LogindSleepLock::PreparesForSleep(sd_bus_message* signal, void* self, sd_bus_error*) {
  int begins = 0;
  if (sd_bus_message_read(signal, "b", &begins) > 0 && begins != 0) {
    static_cast<LogindSleepLock*>(self)->goingToSleep.Raise();
  }
  return 0;
}

// Only begins: what is sent before the bus has answered waits inside.
int LogindSleepLock::Connect() {
  if (const int error = sd_bus_open_system(&bus_); error < 0) return error;
  const int error = sd_bus_match_signal_async(bus_, nullptr, kService, kPath, kInterface,
                                              "PrepareForSleep", PreparesForSleep, nullptr, this);
  if (error < 0) return error;
  const int descriptor = sd_bus_get_fd(bus_);
  if (descriptor < 0) return descriptor;
  readable_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
  writable_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Write);
  for (const auto& notifier : {readable_.get(), writable_.get()}) {
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [this] { Process(); });
  }
  return 0;
}

int LogindSleepLock::Ask() {
  return sd_bus_call_method_async(bus_, nullptr, kService, kPath, kInterface, "Inhibit", Answered,
                                  this, "ssss", "sleep", "VELT-SA", "A transmitter is keyed",
                                  "delay");
}

void LogindSleepLock::Take(sd_bus_message& answer) {
  asking_ = false;
  if (const sd_bus_error* error = sd_bus_message_get_error(&answer)) {
    return Tell(error->message != nullptr ? error->message : error->name);
  }
  int descriptor = -1;  // the answer's own, gone with it
  if (sd_bus_message_read(&answer, "h", &descriptor) <= 0) return Tell("not understood");
  if (wanted_) lock_ = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
}

void LogindSleepLock::Process() {
  int done = 1;
  while (done > 0) done = sd_bus_process(bus_, nullptr);
  if (done < 0) return Lost(done);
  Watch();
}

void LogindSleepLock::Watch() {
  const int events = sd_bus_get_events(bus_);
  uint64_t due = kNever;  // microseconds of the steady clock
  const int timeout = sd_bus_get_timeout(bus_, &due);
  if (events < 0 || timeout < 0) return Lost(std::min(events, timeout));
  readable_->setEnabled((events & POLLIN) != 0);
  writable_->setEnabled((events & POLLOUT) != 0);
  timeout_ = {};
  if (due == kNever) return;
  const auto left = SteadyTime(std::chrono::microseconds(due)) - scheduler_.Now();
  timeout_ = scheduler_.After(std::max(std::chrono::ceil<Milliseconds>(left), Milliseconds(0)),
                              [this] { Process(); });
}

// Called from what is taken down.
void LogindSleepLock::Lost(int error) {
  readable_->setEnabled(false);
  writable_->setEnabled(false);
  timeout_ = {};
  lost_ = true;
  if (std::exchange(asking_, false)) Tell(std::strerror(-error));
  disconnecting_ = scheduler_.After(Milliseconds(0), [this] { Disconnect(); });
}

void LogindSleepLock::Disconnect() {
  disconnecting_ = {};
  lost_ = false;
  timeout_ = {};
  readable_.reset();
  writable_.reset();
  bus_ = sd_bus_close_unref(bus_);
}

void LogindSleepLock::CloseLock() {
  if (lock_ >= 0) ::close(std::exchange(lock_, -1));
}

void LogindSleepLock::Tell(const char* why) {
  log_.Write(LogLevel::Debug, "velt.sleep", std::string("no lock against sleep: ") + why);
}

}  // namespace velt

#include "adapters/logind/logind_sleep_lock.h"

#include <string>

namespace velt {

LogindSleepLock::~LogindSleepLock() {
  if (!thread_) return;
  thread_->quit();
  // A thread that still runs must not be deleted; the lock goes with the process.
  if (!thread_->wait(kEndLimitMs)) static_cast<void>(thread_.release());
}

void LogindSleepLock::Hold() {
  if (!thread_) Start();
  QMetaObject::invokeMethod(caller_, &LogindCaller::Hold, Qt::QueuedConnection);
}

void LogindSleepLock::LetGo() {
  if (!thread_) return;
  QMetaObject::invokeMethod(caller_, &LogindCaller::LetGo, Qt::QueuedConnection);
}

void LogindSleepLock::Start() {
  thread_ = std::make_unique<QThread>();
  caller_ = new LogindCaller;
  caller_->moveToThread(thread_.get());
  QObject::connect(thread_.get(), &QThread::finished, caller_, &QObject::deleteLater);
  QObject::connect(caller_, &LogindCaller::goingToSleep, &here_, [this] { goingToSleep.Raise(); });
  QObject::connect(caller_, &LogindCaller::failed, &here_, [this](const QString& why) {
    log_.Write(LogLevel::Debug, "velt.sleep", "no lock against sleep: " + why.toStdString());
  });
  thread_->start();
}

}  // namespace velt

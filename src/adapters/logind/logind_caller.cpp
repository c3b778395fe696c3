#include "adapters/logind/logind_caller.h"

#include <QDBusError>
#include <QDBusPendingReply>

namespace velt {
namespace {

constexpr const char* kService = "org.freedesktop.login1";
constexpr const char* kPath = "/org/freedesktop/login1";
constexpr const char* kInterface = "org.freedesktop.login1.Manager";

}  // namespace

LogindCaller::~LogindCaller() {
  if (!bus_.name().isEmpty()) QDBusConnection::disconnectFromBus(bus_.name());
}

void LogindCaller::Hold() {
  wanted_ = true;
  if (lock_.isValid() || asking_ || !Connected()) return;
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, "Inhibit");
  call << "sleep"
       << "VELT-SA"
       << "A transmitter is keyed"
       << "delay";
  asking_ = true;
  auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] { Answered(*answer); });
}

void LogindCaller::LetGo() {
  wanted_ = false;
  lock_ = {};
}

void LogindCaller::PrepareForSleep(bool begins) {
  if (begins) Q_EMIT goingToSleep();
}

bool LogindCaller::Connected() {
  if (bus_.isConnected()) return true;
  // Of its own, as others in this process may use the system's bus too.
  const QString name = "velt-logind";
  QDBusConnection::disconnectFromBus(name);
  bus_ = QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
  if (!bus_.isConnected()) {
    Q_EMIT failed(bus_.lastError().message());
    return false;
  }
  bus_.connect(kService, kPath, kInterface, "PrepareForSleep", this, SLOT(PrepareForSleep(bool)));
  return true;
}

void LogindCaller::Answered(QDBusPendingCallWatcher& answer) {
  asking_ = false;
  const QDBusPendingReply<QDBusUnixFileDescriptor> reply = answer;
  if (reply.isError()) {
    Q_EMIT failed(reply.error().message());
  } else if (wanted_) {
    lock_ = reply.value();
  }
  // The answer is the last to keep a lock that nobody wants any more.
  answer.deleteLater();
}

}  // namespace velt

#include "support/login_manager.h"

#include <fcntl.h>
#include <poll.h>

#include <QDBusUnixFileDescriptor>
#include <stdexcept>

namespace velt {
namespace {

constexpr const char* kName = "login-manager";
constexpr const char* kPath = "/org/freedesktop/login1";
constexpr const char* kInterface = "org.freedesktop.login1.Manager";

}  // namespace

std::string LoginManager::Address() {
  static const TempFolder folder;
  return "unix:path=" + (folder / "bus").string();
}

LoginManager::LoginManager()
    : bus({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + Address()}, {}) {
  const auto connected = [this] {
    QDBusConnection::disconnectFromBus(kName);
    connection_ = QDBusConnection::connectToBus(QString::fromStdString(Address()), kName);
    return connection_.isConnected();
  };
  if (!WaitUntil(connected, std::chrono::seconds(5)) ||
      !connection_.registerVirtualObject(kPath, this) ||
      !connection_.registerService("org.freedesktop.login1")) {
    throw std::runtime_error("login manager: " + connection_.lastError().message().toStdString());
  }
}

LoginManager::~LoginManager() {
  bus.Kill();
  QDBusConnection::disconnectFromBus(kName);
}

bool LoginManager::Locked() const {
  pollfd end{lock_.Number(), 0, 0};
  return lock_.IsOpen() && ::poll(&end, 1, 0) == 0;  // the other end is open
}

void LoginManager::GoToSleep() {
  connection_.send(QDBusMessage::createSignal(kPath, kInterface, "PrepareForSleep") << true);
}

bool LoginManager::handleMessage(const QDBusMessage& message, const QDBusConnection&) {
  if (message.interface() != kInterface || message.member() != "Inhibit") return false;
  QStringList arguments;
  for (const QVariant& argument : message.arguments()) arguments << argument.toString();
  if (arguments.join('|') != "sleep|VELT-SA|A transmitter is keyed|delay") return false;
  message.setDelayedReply(true);
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("pipe2");
  lock_ = Descriptor(ends[0]);
  const Descriptor theirs(ends[1]);
  connection_.send(
      message.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(theirs.Number()))));
  return true;
}

}  // namespace velt

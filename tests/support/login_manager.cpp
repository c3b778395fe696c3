#include "support/login_manager.h"

#include <fcntl.h>
#include <poll.h>

#include <QDBusUnixFileDescriptor>
#include <algorithm>
#include <array>
#include <stdexcept>

namespace velt {
namespace {

constexpr const char* kService = "org.freedesktop.login1";
constexpr const char* kPath = "/org/freedesktop/login1";
constexpr const char* kInterface = "org.freedesktop.login1.Manager";

const TempFolder& Folder() {
  static const TempFolder folder;
  return folder;
}

}  // namespace

std::string MessageBus::Address() {
  return "unix:path=" + (Folder() / "bus").string();
}

MessageBus::MessageBus() {
  std::filesystem::remove(Folder() / "up");
  process_ = std::make_unique<Process>(
      std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile",
                               "--print-address=3", "--address=" + Address()},
      Process::Options{.output = Folder() / "log", .files = {{3, Folder() / "up"}}});
  // It says where it is once it listens there.
  if (!WaitUntil([] { return ReadText(Folder() / "up").ends_with('\n'); },
                 std::chrono::seconds(5))) {
    throw std::runtime_error("dbus-daemon: " + Folder().Read("log"));
  }
}

MessageBus::~MessageBus() {
  process_.reset();
  std::filesystem::remove(Folder() / "bus");
}

LoginManager::LoginManager()
    : connection_(QDBusConnection::connectToBus(QString::fromStdString(MessageBus::Address()),
                                                "login-manager")) {
  if (!connection_.registerVirtualObject(kPath, this) || !connection_.registerService(kService)) {
    throw std::runtime_error("login manager: " + connection_.lastError().message().toStdString());
  }
}

LoginManager::~LoginManager() {
  QDBusConnection::disconnectFromBus(connection_.name());
}

bool LoginManager::Locked() const {
  return std::ranges::any_of(locks_, [](const Descriptor& lock) {
    pollfd end{lock.Number(), 0, 0};
    return ::poll(&end, 1, 0) == 0;  // the other end is open
  });
}

void LoginManager::GoToSleep(bool begins) {
  connection_.send(QDBusMessage::createSignal(kPath, kInterface, "PrepareForSleep") << begins);
}

bool LoginManager::handleMessage(const QDBusMessage& message, const QDBusConnection&) {
  if (message.interface() != kInterface || message.member() != "Inhibit") return false;
  QStringList arguments;
  for (const QVariant& argument : message.arguments()) arguments << argument.toString();
  asked.push_back(arguments.join('|').toStdString());
  message.setDelayedReply(true);
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe2");
  locks_.emplace_back(ends[0]);
  const Descriptor theirs(ends[1]);
  connection_.send(
      message.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(theirs.Number()))));
  return true;
}

}  // namespace velt

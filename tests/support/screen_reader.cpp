#include "support/screen_reader.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>
#include <stdexcept>

namespace velt {
namespace {

using std::chrono::seconds;

constexpr const char* kAccessible = "org.a11y.atspi.Accessible";
constexpr const char* kRegistry = "org.a11y.atspi.Registry";
constexpr const char* kRoot = "/org/a11y/atspi/accessible/root";
constexpr const char* kConnection = "screen-reader";
constexpr unsigned kShowing = 25;
constexpr int kCallLimitMs = 2000;
constexpr int kMostChildren = 200;

QVariant Ask(const QDBusConnection& connection, const SpokenObject& object, const char* interface,
             const char* method, const QVariantList& arguments = {}) {
  QDBusMessage call =
      QDBusMessage::createMethodCall(object.service, object.path, interface, method);
  call.setArguments(arguments);
  const QDBusMessage answer = connection.call(call, QDBus::Block, kCallLimitMs);
  if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) return {};
  return answer.arguments().front();
}

QVariant AskProperty(const QDBusConnection& connection, const SpokenObject& object,
                     const char* interface, const char* property) {
  const QVariant answer =
      Ask(connection, object, "org.freedesktop.DBus.Properties", "Get", {interface, property});
  return answer.value<QDBusVariant>().variant();
}

}  // namespace

ScreenReader::ScreenReader() {
  const std::string address = "unix:path=" + (folder_ / "bus").string();
  folder_.Write(
      "bus.conf",
      "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
      "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">"
      "<busconfig><type>session</type><listen>" +
          address +
          "</listen><policy context=\"default\"><allow own=\"*\"/>"
          "<allow send_destination=\"*\"/><allow eavesdrop=\"true\"/></policy></busconfig>");
  const Process::Options options{.environment = {"DBUS_SESSION_BUS_ADDRESS=" + address,
                                                 "XDG_RUNTIME_DIR=" + folder_.Path().string()},
                                 .output = folder_ / "log",
                                 .files = {{3, folder_ / "up"}}};
  bus_ = std::make_unique<Process>(
      std::vector<std::string>{"dbus-daemon", "--nofork", "--nopidfile", "--print-address=3",
                               "--config-file=" + (folder_ / "bus.conf").string()},
      options);
  if (!WaitUntil([this] { return ReadText(folder_ / "up").ends_with('\n'); }, seconds(10))) {
    throw std::runtime_error("dbus-daemon: " + folder_.Read("log"));
  }
  launcher_ = std::make_unique<Process>(
      std::vector<std::string>{"/usr/libexec/at-spi-bus-launcher", "--launch-immediately"},
      options);
  const QDBusConnection session =
      QDBusConnection::connectToBus(QString::fromStdString(address), "session");
  QString found;
  WaitUntil(
      [&] {
        found =
            Ask(session, {"org.a11y.Bus", "/org/a11y/bus", {}, {}}, "org.a11y.Bus", "GetAddress")
                .toString();
        return !found.isEmpty();
      },
      seconds(10));
  QDBusConnection::disconnectFromBus("session");
  if (found.isEmpty()) throw std::runtime_error("at-spi-bus-launcher: " + folder_.Read("log"));
  connection_ = QDBusConnection::connectToBus(found, kConnection);
}

ScreenReader::~ScreenReader() {
  connection_.reset();
  QDBusConnection::disconnectFromBus(kConnection);
  launcher_->KillGroup();
  bus_->KillGroup();
}

std::vector<std::string> ScreenReader::Environment() const {
  return {"DBUS_SESSION_BUS_ADDRESS=unix:path=" + (folder_ / "bus").string(),
          "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"};
}

std::optional<SpokenObject> ScreenReader::Find(const std::string& name) {
  std::optional<SpokenObject> found;
  WaitUntil([&] { return (found = Look(name)).has_value(); }, seconds(8));
  return found;
}

std::optional<SpokenObject> ScreenReader::Look(const std::string& name) {
  for (const SpokenObject& program : Children({kRegistry, kRoot, {}, {}})) {
    if (const auto found = Search(program, name)) return found;
  }
  return std::nullopt;
}

std::optional<SpokenObject> ScreenReader::Search(const SpokenObject& below,
                                                 const std::string& name) {
  for (const SpokenObject& child : Children(below)) {
    if (child.name.starts_with(name) && HasState(child, kShowing)) return child;
    if (const auto found = Search(child, name)) return found;
  }
  return std::nullopt;
}

std::vector<SpokenObject> ScreenReader::Children(const SpokenObject& parent) {
  std::vector<SpokenObject> children;
  const QVariant answer = Ask(*connection_, parent, kAccessible, "GetChildren");
  if (!answer.canConvert<QDBusArgument>()) return children;
  const auto list = answer.value<QDBusArgument>();
  list.beginArray();
  while (!list.atEnd() && children.size() < kMostChildren) {
    SpokenObject child;
    QDBusObjectPath path;
    list.beginStructure();
    list >> child.service >> path;
    list.endStructure();
    child.path = path.path();
    child.name = AskProperty(*connection_, child, kAccessible, "Name").toString().toStdString();
    child.role = Ask(*connection_, child, kAccessible, "GetRoleName").toString().toStdString();
    children.push_back(child);
  }
  list.endArray();
  return children;
}

bool ScreenReader::HasState(const SpokenObject& object, unsigned state) {
  const QVariant answer = Ask(*connection_, object, kAccessible, "GetState");
  if (!answer.canConvert<QDBusArgument>()) return false;
  QList<unsigned> words;
  answer.value<QDBusArgument>() >> words;
  return words.size() == 2 && (words[state / 32] >> state % 32 & 1) != 0;
}

double ScreenReader::Value(const SpokenObject& object) {
  return AskProperty(*connection_, object, "org.a11y.atspi.Value", "CurrentValue").toDouble();
}

void ScreenReader::Act(const SpokenObject& object) {
  Ask(*connection_, object, "org.a11y.atspi.Action", "DoAction", {0});
}

}  // namespace velt

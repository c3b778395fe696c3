#include "support/screen_reader.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>
#include <stdexcept>

namespace velt {
namespace {

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

ScreenReader::ScreenReader()
    : bus_({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + address_},
           {.environment = {"XDG_RUNTIME_DIR=" + folder_.Path().string()},
            .output = folder_ / "log"}) {
  // The bus starts what keeps the accessibility bus when it is asked for that.
  QString found;
  const auto answers = [&] {
    QDBusConnection::disconnectFromBus(kConnection);
    const auto session =
        QDBusConnection::connectToBus(QString::fromStdString(address_), kConnection);
    found = Ask(session, {"org.a11y.Bus", "/org/a11y/bus", {}, {}}, "org.a11y.Bus", "GetAddress")
                .toString();
    return !found.isEmpty();
  };
  if (!WaitUntil(answers, std::chrono::seconds(10))) {
    throw std::runtime_error("dbus-daemon: " + folder_.Read("log"));
  }
  QDBusConnection::disconnectFromBus(kConnection);
  connection_ = QDBusConnection::connectToBus(found, kConnection);
}

ScreenReader::~ScreenReader() {
  connection_.reset();
  QDBusConnection::disconnectFromBus(kConnection);
  bus_.KillGroup();
}

std::vector<std::string> ScreenReader::Environment() const {
  return {"DBUS_SESSION_BUS_ADDRESS=" + address_, "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"};
}

std::optional<SpokenObject> ScreenReader::Find(const std::string& name) {
  std::optional<SpokenObject> found;
  const SpokenObject root{kRegistry, kRoot, {}, {}};
  WaitUntil([&] { return (found = Search(root, name)).has_value(); }, std::chrono::seconds(8));
  return found;
}

std::optional<SpokenObject> ScreenReader::Search(const SpokenObject& below,
                                                 const std::string& name) {
  const QVariant answer = Ask(*connection_, below, kAccessible, "GetChildren");
  if (!answer.canConvert<QDBusArgument>()) return std::nullopt;
  const auto list = answer.value<QDBusArgument>();
  list.beginArray();
  for (int count = 0; !list.atEnd() && count < kMostChildren; ++count) {
    SpokenObject child;
    QDBusObjectPath path;
    list.beginStructure();
    list >> child.service >> path;
    list.endStructure();
    child.path = path.path();
    child.name = AskProperty(*connection_, child, kAccessible, "Name").toString().toStdString();
    child.role = Ask(*connection_, child, kAccessible, "GetRoleName").toString().toStdString();
    const bool named = child.name.starts_with(name) && child.role != "application";
    if (named && HasState(child, kShowing)) return child;
    if (const auto found = Search(child, name)) return found;
  }
  return std::nullopt;
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

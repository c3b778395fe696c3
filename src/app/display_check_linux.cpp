#include <sys/socket.h>
#include <sys/un.h>
#include <xcb/xcb.h>

#include <QCoreApplication>
#include <QDir>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>
#include <sstream>
#include <thread>

#include "adapters/files/file_descriptor.h"
#include "app/display_check.h"

namespace velt {
namespace {

constexpr std::chrono::seconds kLongestWait(5);

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool XServerAnswers(const std::string& display) {
  // The library waits for a server without a limit; a thread that hangs in it ends with the
  // program.
  auto answer = std::make_shared<std::promise<bool>>();
  std::future<bool> answered = answer->get_future();
  std::thread([display, answer] {
    xcb_connection_t* connection =
        ::xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr);
    answer->set_value(::xcb_connection_has_error(connection) == 0);
    ::xcb_disconnect(connection);
  }).detach();
  return answered.wait_for(kLongestWait) == std::future_status::ready && answered.get();
}

bool WaylandServerListens(const std::string& display) {
  const std::string path =
      display.starts_with('/') ? display : Variable("XDG_RUNTIME_DIR") + "/" + display;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return false;
  path.copy(address.sun_path, path.size());
  const FileDescriptor client(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  return ::connect(client.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

// Whether Qt has what it needs for a kind of display.
bool HasPlugin(const QString& platform) {
  const QStringList folders = QCoreApplication::libraryPaths();
  return std::any_of(folders.begin(), folders.end(), [&platform](const QString& folder) {
    return !QDir(folder + "/platforms").entryList({"libq" + platform + "*"}).isEmpty();
  });
}

// The kind of display by Qt's name for it, without what it is told besides.
bool CanUse(const std::string& platform, const std::string& xDisplay, const std::string& wayland) {
  if (!HasPlugin(QString::fromStdString(platform))) return false;
  if (platform == "xcb") return XServerAnswers(xDisplay);
  return !platform.starts_with("wayland") || WaylandServerListens(wayland);
}

}  // namespace

std::string SettleDisplay(const Options& options) {
  const std::string asked =
      options.platform.empty() ? Variable("QT_QPA_PLATFORM") : options.platform;
  const std::string xDisplay = options.display.empty() ? Variable("DISPLAY") : options.display;
  const std::string wayland = Variable("WAYLAND_DISPLAY");
  if (!asked.empty()) {
    std::istringstream kinds(asked);
    for (std::string kind; std::getline(kinds, kind, ';');) {
      if (CanUse(kind.substr(0, kind.find(':')), xDisplay, wayland)) return "";
    }
    return "no display of the kind \"" + asked + "\" can be used.";
  }
  if (!xDisplay.empty() && CanUse("xcb", xDisplay, wayland)) return "";
  if (!wayland.empty() && CanUse("wayland", xDisplay, wayland)) {
    qputenv("QT_QPA_PLATFORM", "wayland");
    return "";
  }
  if (xDisplay.empty() && wayland.empty()) return "there is no display.";
  return "the display " + (xDisplay.empty() ? wayland : xDisplay) +
         " cannot be used: it does not exist, does not answer or refuses.";
}

}  // namespace velt

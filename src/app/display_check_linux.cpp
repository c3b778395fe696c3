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

// Null when the server is not there, refuses or does not answer.
std::shared_ptr<void> ConnectToX(const std::string& display) {
  // The library waits for a server without a limit; a thread that hangs in it ends with the
  // program.
  auto promise = std::make_shared<std::promise<xcb_connection_t*>>();
  std::future<xcb_connection_t*> made = promise->get_future();
  std::thread([display, promise] {
    promise->set_value(::xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr));
  }).detach();
  if (made.wait_for(kLongestWait) != std::future_status::ready) return nullptr;
  const std::shared_ptr<xcb_connection_t> connection(made.get(), ::xcb_disconnect);
  return ::xcb_connection_has_error(connection.get()) == 0 ? connection : nullptr;
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

class DisplayChooser {
 public:
  explicit DisplayChooser(const Options& options)
      : asked_(options.platform.empty() ? Variable("QT_QPA_PLATFORM") : options.platform),
        xDisplay_(options.display.empty() ? Variable("DISPLAY") : options.display),
        wayland_(Variable("WAYLAND_DISPLAY")) {}

  SettledDisplay Settle() {
    std::string problem = asked_.empty() ? TryUsual() : TryAsked();
    return {std::move(problem), std::move(connection_)};
  }

 private:
  // A kind by Qt's name for it, without what it is told besides.
  bool CanUse(const std::string& platform) {
    if (!HasPlugin(QString::fromStdString(platform))) return false;
    if (platform == "xcb") return (connection_ = ConnectToX(xDisplay_)) != nullptr;
    return !platform.starts_with("wayland") || WaylandServerListens(wayland_);
  }

  std::string TryAsked() {
    std::istringstream kinds(asked_);
    for (std::string kind; std::getline(kinds, kind, ';');) {
      if (CanUse(kind.substr(0, kind.find(':')))) return "";
    }
    return "no display of the kind \"" + asked_ + "\" can be used.";
  }

  std::string TryUsual() {
    if (!xDisplay_.empty() && CanUse("xcb")) return "";
    if (!wayland_.empty() && CanUse("wayland")) {
      qputenv("QT_QPA_PLATFORM", "wayland");
      return "";
    }
    if (xDisplay_.empty() && wayland_.empty()) return "there is no display.";
    return "the display " + (xDisplay_.empty() ? wayland_ : xDisplay_) +
           " cannot be used: it does not exist, does not answer or refuses.";
  }

  std::string asked_;
  std::string xDisplay_;
  std::string wayland_;
  std::shared_ptr<void> connection_;
};

}  // namespace

SettledDisplay SettleDisplay(const Options& options) {
  return DisplayChooser(options).Settle();
}

}  // namespace velt

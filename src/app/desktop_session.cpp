#include "app/desktop_session.h"

#include <QGuiApplication>
#include <QScreen>

namespace velt {
namespace {

std::string ScreenText(const QScreen& screen) {
  const double factor = screen.devicePixelRatio();
  const QSize pixels = (QSizeF(screen.size()) * factor).toSize();
  QString text = QString("%1 x %2, factor %3, %4 dpi")
                     .arg(pixels.width())
                     .arg(pixels.height())
                     .arg(factor)
                     .arg(screen.logicalDotsPerInch() * factor, 0, 'f', 0);
  if (!screen.name().isEmpty()) text += " (" + screen.name() + ")";
  if (&screen == QGuiApplication::primaryScreen()) text += ", primary";
  return text.toStdString();
}

}  // namespace

DesktopSession::DesktopSession(Scheduler& scheduler, XConnection* server) : scheduler_(scheduler) {
  if (server == nullptr) return;
  x_ = std::make_unique<XSession>(*server);
  connections_ += x_->learnt.Listen([this] { learnt.Raise(); });
}

SessionFacts DesktopSession::Facts() const {
  SessionFacts facts{.toolkit = std::string("Qt ") + qVersion(),
                     .windowSystem = WindowSystem(),
                     .windowManager = x_ ? x_->WindowManager() : "",
                     .desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP").toStdString(),
                     .screens = {},
                     .soundServer = soundServer_};
  for (const QScreen* screen : QGuiApplication::screens()) {
    facts.screens.push_back(ScreenText(*screen));
  }
  return facts;
}

// Older Xwayland servers have no extension that tells; the session's variable does.
std::string DesktopSession::WindowSystem() const {
  if (!x_) return QGuiApplication::platformName().toStdString();
  const bool guest = x_->InXwayland() || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
  return guest ? "X11 (Xwayland)" : "X11";
}

void DesktopSession::Ask() {
  if (x_) x_->Ask();
  if (!sound_) sound_ = std::make_unique<PulseDeviceLister>(scheduler_);
  sound_->List([this](const DeviceListing& listing) {
    soundServer_ = listing.error.empty() ? listing.server : listing.error;
    learnt.Raise();
  });
}

}  // namespace velt

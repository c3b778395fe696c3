#include "adapters/qt/qt_launcher.h"

#include <QDesktopServices>
#include <QUrl>

namespace velt {

void QtLauncher::OpenDocument(const std::string& target) {
  QDesktopServices::openUrl(QUrl::fromUserInput(QString::fromStdString(target)));
}

}  // namespace velt

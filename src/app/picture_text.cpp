#include "app/picture_text.h"

#include <QGuiApplication>

namespace velt {

PictureText::PictureText() {
  // Qt's remarks on a desktop that is not there are of no use to anybody.
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static char name[] = "velt-sa";
  static char* arguments[] = {name, nullptr};
  static int count = 1;
  application_ = std::make_unique<QGuiApplication>(count, arguments);
}

PictureText::~PictureText() = default;

}  // namespace velt

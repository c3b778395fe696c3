#include "app/picture_text.h"

#include <QGuiApplication>

#include "adapters/qt/qt_log.h"

namespace velt {

PictureText::PictureText() {
  QtLog::Install(nullptr);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static char name[] = "velt-sa";
  static char* arguments[] = {name, nullptr};
  static int count = 1;
  application_ = std::make_unique<QGuiApplication>(count, arguments);
}

PictureText::~PictureText() = default;

}  // namespace velt

#include "adapters/qt/place_beside.h"

#include <QScreen>
#include <algorithm>

namespace velt {

void PlaceBeside(QWidget& dialog, const QWidget* main) {
  if (main == nullptr || !main->isVisible()) return;
  dialog.adjustSize();
  const QRect window = main->frameGeometry();
  const QRect screen = main->screen()->availableGeometry();
  const int titleBar = main->geometry().top() - window.top();
  const QSize size = dialog.size() + QSize(0, titleBar);
  // As far along the main window as the screen allows.
  const QPoint along(std::clamp(window.left(), screen.left(),
                                std::max(screen.left(), screen.right() - size.width())),
                     std::clamp(window.top(), screen.top(),
                                std::max(screen.top(), screen.bottom() - size.height())));
  for (const QPoint place :
       {QPoint(along.x(), window.bottom() + 1), QPoint(along.x(), window.top() - size.height() - 1),
        QPoint(window.right() + 1, along.y()),
        QPoint(window.left() - size.width() - 1, along.y())}) {
    if (screen.contains(QRect(place, size))) return dialog.move(place);
  }
}

}  // namespace velt

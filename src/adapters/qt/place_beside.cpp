#include "adapters/qt/place_beside.h"

#include <QScreen>
#include <algorithm>

namespace velt {

void PlaceBeside(QWidget& dialog, const QWidget* main, const QWidget* asking) {
  if (main == nullptr || !main->isVisible()) return;
  dialog.adjustSize();
  const QRect window = main->frameGeometry();
  const QRect screen = main->screen()->availableGeometry();
  const int titleBar = main->geometry().top() - window.top();
  const QSize size = dialog.size() + QSize(0, titleBar);
  // RX and the display are in the window's left upper part.
  const QRect seen(window.topLeft(), window.size() * 2 / 3);
  // Over the dialog that asks, wherever the user has moved that.
  const bool hasDialog = asking != nullptr && asking != main && asking->isVisible();
  const QPoint over = hasDialog ? asking->frameGeometry().center() - QRect(QPoint(), size).center()
                                : window.bottomLeft() + QPoint(0, 1);
  int leastHidden = window.width() * window.height();
  for (const QPoint place :
       {over, window.bottomLeft() + QPoint(0, 1), window.topLeft() - QPoint(0, size.height() + 1),
        window.topRight() + QPoint(1, 0), window.topLeft() - QPoint(size.width() + 1, 0)}) {
    const QPoint most = screen.bottomRight() - QPoint(size.width(), size.height());
    const QPoint possible(std::clamp(place.x(), screen.left(), std::max(screen.left(), most.x())),
                          std::clamp(place.y(), screen.top(), std::max(screen.top(), most.y())));
    const QRect hides = QRect(possible, size) & seen;
    const int hidden = hides.width() * hides.height();
    if (hidden >= leastHidden) continue;
    leastHidden = hidden;
    dialog.move(possible);
  }
}

}  // namespace velt

#include "adapters/qt/place_beside.h"

#include <QScreen>
#include <vector>

#include "platform/placing.h"

namespace velt {
namespace {

Rectangle Of(const QRect& place) {
  return {place.left(), place.top(), place.width(), place.height()};
}

}  // namespace

void PlaceBeside(QWidget& dialog, const QWidget* main, const QWidget* asking) {
  if (main == nullptr || !main->isVisible()) return;
  dialog.adjustSize();
  const Rectangle window = Of(main->frameGeometry());
  const int width = dialog.width();
  const int height = dialog.height() + main->geometry().top() - window.top;
  std::vector<Rectangle> places = PlacesBeside(window, width, height);
  // Over the dialog that asks, wherever the user has moved that.
  if (asking != nullptr && asking != main && asking->isVisible()) {
    const QPoint middle = asking->frameGeometry().center();
    places.insert(places.begin(), {middle.x() - width / 2, middle.y() - height / 2, width, height});
  }
  // RX and the display are in the window's left upper part.
  const Rectangle seen{window.left, window.top, window.width * 2 / 3, window.height * 2 / 3};
  const Rectangle place =
      CheapestPlace(places, Of(main->screen()->availableGeometry()),
                    [&seen](const Rectangle& at) { return CommonArea(at, seen); });
  dialog.move(place.left, place.top);
}

}  // namespace velt

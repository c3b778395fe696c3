#include "ui/on_screen.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace velt {
namespace {

QRect MovedInside(const QRect& window, const QRect& screen) {
  const auto inside = [](int wanted, int least, int most) {
    return std::max(least, std::min(wanted, most));
  };
  return {
      QPoint(inside(window.left(), screen.left(), screen.left() + screen.width() - window.width()),
             inside(window.top(), screen.top(), screen.top() + screen.height() - window.height())),
      window.size()};
}

}  // namespace

QRect BroughtOnScreen(const QRect& window, const QVector<QRect>& screens) {
  QRect best = window;
  int64_t leastWay = std::numeric_limits<int64_t>::max();
  for (const QRect& screen : screens) {
    const QRect moved = MovedInside(window, screen);
    const int64_t way = std::abs(int64_t{moved.left()} - window.left()) +
                        std::abs(int64_t{moved.top()} - window.top());
    if (way >= leastWay) continue;
    leastWay = way;
    best = moved;
  }
  return best;
}

}  // namespace velt

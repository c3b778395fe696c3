#include "platform/placing.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace velt {
namespace {

int Inside(int wanted, int least, int most) {
  return std::max(least, std::min(wanted, most));
}

Rectangle MovedInside(const Rectangle& window, const Rectangle& screen) {
  return {Inside(window.left, screen.left, screen.left + screen.width - window.width),
          Inside(window.top, screen.top, screen.top + screen.height - window.height), window.width,
          window.height};
}

int CommonLength(int start, int length, int otherStart, int otherLength) {
  return std::max(0,
                  std::min(start + length, otherStart + otherLength) - std::max(start, otherStart));
}

}  // namespace

Rectangle BroughtOnScreen(const Rectangle& window, std::span<const Rectangle> screens) {
  Rectangle best = window;
  int64_t leastWay = std::numeric_limits<int64_t>::max();
  for (const Rectangle& screen : screens) {
    const Rectangle moved = MovedInside(window, screen);
    const int64_t way =
        std::abs(int64_t{moved.left} - window.left) + std::abs(int64_t{moved.top} - window.top);
    if (way >= leastWay) continue;
    leastWay = way;
    best = moved;
  }
  return best;
}

std::vector<Rectangle> PlacesBeside(const Rectangle& window, int width, int height) {
  return {{window.left, window.top + window.height, width, height},
          {window.left, window.top - height, width, height},
          {window.left + window.width, window.top, width, height},
          {window.left - width, window.top, width, height}};
}

int CommonArea(const Rectangle& one, const Rectangle& other) {
  return CommonLength(one.left, one.width, other.left, other.width) *
         CommonLength(one.top, one.height, other.top, other.height);
}

Rectangle CheapestPlace(std::span<const Rectangle> places, const Rectangle& screen,
                        const std::function<int(const Rectangle&)>& cost) {
  Rectangle cheapest;
  int leastCost = std::numeric_limits<int>::max();
  for (const Rectangle& wanted : places) {
    const Rectangle place = BroughtOnScreen(wanted, {&screen, 1});
    const int its = cost(place);
    if (its >= leastCost) continue;
    leastCost = its;
    cheapest = place;
  }
  return cheapest;
}

}  // namespace velt

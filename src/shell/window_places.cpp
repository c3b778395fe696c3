#include "shell/window_places.h"

#include <algorithm>

namespace velt {
namespace {

constexpr int kMargin = 3;
constexpr int kGap = 3;
constexpr int kTopRow = 24;
constexpr int kScales = 13;
constexpr int kBottomRow = 16;
constexpr int kSlider = 16;
constexpr int kMeter = 14;
// Below this width the first row has no room for texts on its buttons.
constexpr int kRoomyWidth = 540;

// Hands out places from left to right.
class Row {
 public:
  Row(int left, int top, int height) : left_(left), top_(top), height_(height) {}
  Rectangle Take(int width) {
    const Rectangle place{left_, top_, width, height_};
    left_ += width + kGap;
    return place;
  }
  void Skip(int width) { left_ += width; }

 private:
  int left_;
  int top_;
  int height_;
};

}  // namespace

WindowPlaces ArrangeWindow(int widthPx, int heightPx) {
  const int width = std::max(widthPx, 333);
  const int height = std::max(heightPx, 100);
  WindowPlaces p;
  p.compactButtons = width < kRoomyWidth;

  Row row(kMargin, kMargin, kTopRow);
  p.options = row.Take(p.compactButtons ? 38 : 60);
  p.file = row.Take(p.compactButtons ? 26 : 40);
  p.cat = row.Take(p.compactButtons ? 26 : 40);
  p.startStop = row.Take(26);
  p.frequency = row.Take(p.compactButtons ? 106 : 126);
  p.mode = row.Take(p.compactButtons ? 34 : 38);
  p.trx = row.Take(26);
  const int right = width - kMargin;
  p.waterfall = {right - 26, kMargin, 26, kTopRow};
  const int bottom = height - kMargin - kBottomRow;
  if (p.compactButtons) {
    p.peak = {right - 82, bottom, 82, kBottomRow};
  } else {
    p.transmit = row.Take(28);
    p.receive = row.Take(28);
    row.Skip(kGap);
    p.peak = row.Take(0);
    p.peak.width = p.waterfall.left - kGap - p.peak.left;
  }

  const int top = kMargin + kTopRow + kGap;
  const int displayHeight = bottom - 1 - kScales - top;
  p.slider = {kMargin, top, kSlider, displayHeight};
  p.meter = {right - kMeter, top, kMeter, displayHeight};
  p.slider2 = {p.meter.left - kGap - kSlider, top, kSlider, displayHeight};
  p.scope = {kMargin + kSlider + kGap, top, 0, displayHeight};
  p.scope.width = p.slider2.left - kGap - p.scope.left;
  p.scales = {p.scope.left, top + displayHeight, p.scope.width, kScales};

  p.modeSource = {kMargin, bottom, 64, kBottomRow};
  const int messageRight = p.compactButtons ? p.peak.left - kGap : right;
  const int messageLeft = p.modeSource.left + p.modeSource.width + kGap;
  p.message = {messageLeft, bottom, messageRight - messageLeft, kBottomRow};
  p.notice = {p.scope.left, p.scope.top, p.scope.width, 18};
  return p;
}

}  // namespace velt

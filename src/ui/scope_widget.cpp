#include "ui/scope_widget.h"

#include <QPalette>
#include <algorithm>

namespace velt {

ScopeWidget::ScopeWidget(std::function<const Raster&()> picture, QWidget* parent)
    : LiveWidget(parent), picture_(std::move(picture)) {
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
}

void ScopeWidget::Follow(const ScopeControl& control) {
  bool changed = frame_ != control.frame || back_ != control.backColour;
  frame_ = control.frame;
  back_ = control.backColour;
  changed |= vertical_.Set(control.verticalGrid, control.gridColour);
  changed |= horizontal_.Set(control.horizontalGrid, control.gridColour);
  changed |= markers_.Set(control.markers, control.markerColour);
  if (changed) Changed();
}

bool ScopeWidget::Lines::Set(const std::vector<ScopeLine>& lines, uint32_t colour) {
  if (lines_ == lines && colour_ == colour) return false;
  lines_ = lines;
  colour_ = colour;
  rects_.clear();
  for (const ScopeLine& line : lines) {
    if (!line.visible) continue;
    const QRect whole(QPoint(line.x1, line.y1), QPoint(line.x2, line.y2));
    if (!line.dotted) {
      rects_.append(whole);
      continue;
    }
    for (int y = whole.top(); y <= whole.bottom(); y += 4) {
      rects_.append(QRect(whole.left(), y, 1, std::min(2, whole.bottom() - y + 1)));
    }
  }
  return true;
}

void ScopeWidget::Lines::Paint(Canvas& canvas) const {
  for (const QRect& rect : rects_) canvas.Fill(rect, colour_);
}

void ScopeWidget::Paint(Canvas& canvas) {
  const Raster& picture = picture_();
  if (picture.Width() < width() || picture.Height() < height()) canvas.Fill(canvas.Area(), back_);
  canvas.Draw(picture);
  for (const Lines* lines : {&vertical_, &horizontal_, &markers_}) lines->Paint(canvas);
  if (!hasFocus()) return;
  const QRgb ring = palette().color(QPalette::Highlight).rgb();
  const QRect area = canvas.Area();
  canvas.Fill({0, 0, area.width(), 1}, ring);
  canvas.Fill({0, area.bottom(), area.width(), 1}, ring);
  canvas.Fill({0, 0, 1, area.height()}, ring);
  canvas.Fill({area.right(), 0, 1, area.height()}, ring);
}

void ScopeWidget::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  update();
}

void ScopeWidget::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  update();
}

}  // namespace velt

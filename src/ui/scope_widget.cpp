#include "ui/scope_widget.h"

#include <QImage>
#include <QPainter>
#include <algorithm>

namespace velt {

ScopeWidget::ScopeWidget(std::function<const Raster&()> picture, QWidget* parent)
    : QWidget(parent), picture_(std::move(picture)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
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
  if (changed) update();
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

void ScopeWidget::Lines::Paint(QPainter& painter) const {
  painter.setBrush(QColor::fromRgb(colour_));
  painter.drawRects(rects_);
}

void ScopeWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Raster& raster = picture_();
  if (raster.Width() < width() || raster.Height() < height()) {
    painter.fillRect(rect(), QColor::fromRgb(back_));
  }
  if (raster.Width() > 0 && raster.Height() > 0) {
    // Lives for this paint only: it looks at the raster's own memory.
    const QImage image(reinterpret_cast<const uchar*>(raster.Pixels().data()), raster.Width(),
                       raster.Height(), qsizetype{4} * raster.Width(), QImage::Format_RGB32);
    painter.drawImage(0, 0, image);
  }
  painter.setPen(Qt::NoPen);
  for (const Lines* lines : {&vertical_, &horizontal_, &markers_}) lines->Paint(painter);
  if (hasFocus()) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
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

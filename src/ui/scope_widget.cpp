#include "ui/scope_widget.h"

#include <QImage>
#include <QPainter>
#include <algorithm>

namespace velt {

ScopeWidget::ScopeWidget(const ScopeControl& scope, std::function<const Raster&()> picture,
                         QWidget* parent)
    : QWidget(parent), scope_(scope), picture_(std::move(picture)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
}

void ScopeWidget::ShowFrame() {
  update();
}

void ScopeWidget::ShowLines() {
  grid_.clear();
  markers_.clear();
  Collect(scope_.verticalGrid, grid_);
  Collect(scope_.horizontalGrid, grid_);
  Collect(scope_.markers, markers_);
  update();
}

void ScopeWidget::Collect(const std::vector<ScopeLine>& lines, QVector<QRect>& rects) {
  for (const ScopeLine& line : lines) {
    if (!line.visible) continue;
    const QRect whole(QPoint(line.x1, line.y1), QPoint(line.x2, line.y2));
    if (!line.dotted) {
      rects.append(whole);
      continue;
    }
    for (int y = whole.top(); y <= whole.bottom(); y += 4) {
      rects.append(QRect(whole.left(), y, 1, std::min(2, whole.bottom() - y + 1)));
    }
  }
}

void ScopeWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Raster& raster = picture_();
  const QColor back = QColor::fromRgb(scope_.backColour.Get());
  if (raster.Width() < width() || raster.Height() < height()) painter.fillRect(rect(), back);
  if (raster.Width() > 0 && raster.Height() > 0) {
    // Lives for this paint only: it looks at the raster's own memory.
    const QImage image(reinterpret_cast<const uchar*>(raster.Pixels().data()), raster.Width(),
                       raster.Height(), qsizetype{4} * raster.Width(), QImage::Format_RGB32);
    painter.drawImage(0, 0, image);
  }
  const QColor gridColour = QColor::fromRgb(scope_.gridColour.Get());
  for (const QRect& line : grid_) painter.fillRect(line, gridColour);
  const QColor markerColour = QColor::fromRgb(scope_.markerColour.Get());
  for (const QRect& line : markers_) painter.fillRect(line, markerColour);
  if (hasFocus()) {
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

#include "ui/live_widget.h"

#include <QBackingStore>
#include <QGuiApplication>
#include <QPainter>
#include <QWindow>
#include <algorithm>

namespace velt {
namespace {

// Where painting outside of paint events was tried.
bool PlatformAllowsIt() {
  static const bool allows =
      QGuiApplication::platformName() == "xcb" || QGuiApplication::platformName() == "offscreen";
  return allows;
}

// A part of an image of 32-bit pixels.
Canvas CanvasOn(QImage& image, const QRect& part) {
  auto* row = reinterpret_cast<uint32_t*>(image.scanLine(part.top()));
  return {row + part.left(), image.bytesPerLine() / 4, part.size()};
}

}  // namespace

LiveWidget::LiveWidget(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void LiveWidget::paintEvent(QPaintEvent*) {
  QPainter(this).drawImage(0, 0, Picture());
}

const QImage& LiveWidget::Picture() {
  if (picture_.size() != size()) picture_ = QImage(size(), QImage::Format_RGB32);
  Canvas canvas = CanvasOn(picture_, rect());
  Paint(canvas);
  return picture_;
}

// Only in a window that is on the screen in its present size, and under nothing.
bool LiveWidget::CanPaintNow() const {
  const QWidget& top = *window();
  const QBackingStore* store = top.backingStore();
  if (!PlatformAllowsIt() || !isVisible() || !updatesEnabled() || top.windowHandle() == nullptr ||
      !top.windowHandle()->isExposed() || store == nullptr || store->size() != top.size()) {
    return false;
  }
  return std::ranges::none_of(parent()->children(), [this](const QObject* child) {
    const auto* sibling = qobject_cast<const QWidget*>(child);
    return sibling != nullptr && sibling != this && sibling->isVisible() &&
           sibling->geometry().intersects(geometry());
  });
}

QRect LiveWidget::PaintInto(QBackingStore& store) {
  const QRect place(mapTo(window(), QPoint(0, 0)), size());
  auto* image = dynamic_cast<QImage*>(store.paintDevice());
  if (image != nullptr && image->devicePixelRatio() == 1 && image->rect().contains(place) &&
      (image->format() == QImage::Format_RGB32 ||
       image->format() == QImage::Format_ARGB32_Premultiplied)) {
    Canvas canvas = CanvasOn(*image, place);
    Paint(canvas);
  } else {
    QPainter(store.paintDevice()).drawImage(place.topLeft(), Picture());
  }
  return place;
}

void LiveWidget::PaintChanged(const std::vector<LiveWidget*>& widgets) {
  QBackingStore* store = nullptr;
  QRect painted;
  for (LiveWidget* widget : widgets) {
    if (!std::exchange(widget->changed_, false)) continue;
    if (!widget->CanPaintNow()) {
      widget->update();
      continue;
    }
    if (store == nullptr) {
      store = widget->window()->backingStore();
      // No region: what the display has not read yet is painted over, not waited for.
      store->beginPaint(QRegion());
    }
    painted |= widget->PaintInto(*store);
  }
  if (store == nullptr) return;
  store->endPaint();
  store->flush(painted, store->window());
}

}  // namespace velt

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

// A part of an image of 32-bit pixels, for so many logical ones.
Canvas CanvasOn(QImage& image, const QRect& part, QSize logical) {
  auto* row = reinterpret_cast<uint32_t*>(image.scanLine(part.top()));
  return {row + part.left(), image.bytesPerLine() / 4, part.size(), logical};
}

}  // namespace

LiveWidget::LiveWidget(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
}

// On whole pixels of the device, even where the desktop's factor puts the widget between them.
void LiveWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QTransform toDevice = painter.deviceTransform();
  const QRect place = toDevice.mapRect(rect());
  painter.drawImage(toDevice.inverted().map(QPointF(place.topLeft())),
                    Picture(place.size(), toDevice.m11()));
}

const QImage& LiveWidget::Picture(QSize size, qreal factor) {
  if (picture_.size() != size) picture_ = QImage(size, QImage::Format_RGB32);
  picture_.setDevicePixelRatio(factor);
  Canvas canvas = CanvasOn(picture_, picture_.rect(), this->size());
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
  const qreal factor = store.paintDevice()->devicePixelRatio();
  // Rounded as Qt rounds what it clips a widget to.
  const QRect pixels = QTransform::fromScale(factor, factor).mapRect(place);
  auto* image = dynamic_cast<QImage*>(store.paintDevice());
  if (image != nullptr && image->rect().contains(pixels) &&
      (image->format() == QImage::Format_RGB32 ||
       image->format() == QImage::Format_ARGB32_Premultiplied)) {
    Canvas canvas = CanvasOn(*image, pixels, size());
    Paint(canvas);
  } else {
    QPainter(store.paintDevice())
        .drawImage(QPointF(pixels.topLeft()) / factor, Picture(pixels.size(), factor));
  }
  // Between two pixels of the device both may have changed.
  return factor == 1 ? place : place.adjusted(-1, -1, 1, 1);
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

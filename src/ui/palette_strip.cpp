#include "ui/palette_strip.h"

#include <QImage>
#include <QPainter>
#include <utility>

namespace velt {

PaletteStrip::PaletteStrip(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PaletteStrip::SetColours(const std::vector<uint32_t>& colours) {
  if (colours_ == colours) return;
  colours_ = colours;
  update();
}

void PaletteStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Mid));
  if (colours_.empty()) return;
  const QImage row(reinterpret_cast<const uchar*>(colours_.data()),
                   static_cast<int>(colours_.size()), 1, QImage::Format_RGB32);
  painter.drawImage(QRectF(rect().adjusted(1, 1, -1, -1)), row);
}

}  // namespace velt

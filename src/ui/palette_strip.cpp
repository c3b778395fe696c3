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
  if (!colours_.empty()) {
    const QImage row(reinterpret_cast<const uchar*>(colours_.data()),
                     static_cast<int>(colours_.size()), 1, QImage::Format_RGB32);
    painter.drawImage(QRectF(rect()), row);
  }
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace velt

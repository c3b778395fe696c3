#include "ui/lamp_widget.h"

#include <QPainter>

namespace velt {
namespace {

constexpr int kPixels = 14;

QColor Shown(LampColour colour) {
  switch (colour) {
    case LampColour::Green:
      return QColor(0x2E, 0xA0, 0x43);
    case LampColour::Amber:
      return QColor(0xE8, 0x9B, 0x0C);
    case LampColour::Grey:
      break;
  }
  return QColor(0x8C, 0x8C, 0x8C);
}

}  // namespace

LampWidget::LampWidget(QWidget* parent) : QWidget(parent) {
  setFixedSize(kPixels, kPixels);
}

void LampWidget::SetColour(LampColour colour) {
  if (colour_ == colour) return;
  colour_ = colour;
  update();
}

void LampWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor colour = Shown(colour_);
  painter.setPen(colour.darker(140));
  painter.setBrush(colour);
  painter.drawEllipse(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5));
}

}  // namespace velt

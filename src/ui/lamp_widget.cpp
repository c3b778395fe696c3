#include "ui/lamp_widget.h"

#include <QPainter>

#include "ui/face_palette.h"

namespace velt {
namespace {

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

LampWidget::LampWidget(QWidget* parent, int pixels) : QWidget(parent), pixels_(pixels) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
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
  const bool isSeen = IsSeen(colour, palette().color(QPalette::Window));
  painter.setPen(isSeen ? colour.darker(140) : palette().color(QPalette::WindowText));
  painter.setBrush(colour);
  const double radius = pixels_ / 2.0 - pixels_ / 10.0;
  painter.drawEllipse(QRectF(rect()).center(), radius, radius);
}

}  // namespace velt

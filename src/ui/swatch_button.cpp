#include "ui/swatch_button.h"

#include <QPainter>

#include "ui/face_palette.h"

namespace velt {
namespace {

constexpr int kWidth = 72;
constexpr int kEdge = 5;

}  // namespace

SwatchButton::SwatchButton(QWidget* parent) : QPushButton(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SwatchButton::SetColour(uint32_t colour) {
  if (colour_ == colour) return;
  colour_ = colour;
  update();
}

QSize SwatchButton::sizeHint() const {
  return {kWidth, QPushButton::sizeHint().height()};
}

void SwatchButton::paintEvent(QPaintEvent* event) {
  QPushButton::paintEvent(event);
  QPainter painter(this);
  const QColor colour = colour_ == 0 ? palette().color(QPalette::Button) : QColor::fromRgb(colour_);
  // Seen whatever the colour is.
  painter.setPen(
      Between(palette().color(QPalette::Button), InkOn(palette().color(QPalette::Button)), 0.6));
  painter.setBrush(colour);
  painter.drawRect(rect().adjusted(kEdge, kEdge, -kEdge - 1, -kEdge - 1));
}

}  // namespace velt

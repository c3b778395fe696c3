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
  const QColor face = palette().color(QPalette::Button);
  const QRect box = rect().adjusted(kEdge, kEdge, -kEdge, -kEdge);
  // Seen whatever the colour is.
  painter.fillRect(box, Between(face, InkOn(face), 0.6));
  painter.fillRect(box.adjusted(1, 1, -1, -1), colour_ == 0 ? face : QColor::fromRgb(colour_));
}

}  // namespace velt

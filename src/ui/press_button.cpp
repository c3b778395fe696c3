#include "ui/press_button.h"

#include <QPainter>

namespace velt {

PressButton::PressButton(QWidget* parent) : QToolButton(parent) {
  setCheckable(true);
  setFocusPolicy(Qt::TabFocus);
  setContextMenuPolicy(Qt::CustomContextMenu);
}

void PressButton::SetLight(const QColor& colour) {
  if (light_ == colour) return;
  light_ = colour;
  update();
}

// A style makes a colour darker, paler or nothing of it; this one has to look the same everywhere.
void PressButton::paintEvent(QPaintEvent* event) {
  QToolButton::paintEvent(event);
  if (!light_.isValid()) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF face = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(light_.darker(150));
  painter.setBrush(light_);
  painter.drawRoundedRect(face, 2.5, 2.5);
  if (hasFocus()) {
    painter.setPen(Qt::white);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(face.adjusted(2, 2, -2, -2), 1, 1);
  }
  painter.setPen(Qt::white);
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
}

}  // namespace velt

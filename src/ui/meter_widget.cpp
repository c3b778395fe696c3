#include "ui/meter_widget.h"

#include <QPainter>
#include <algorithm>

namespace velt {

MeterWidget::MeterWidget(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void MeterWidget::SetLevel(int pixels) {
  const int before = Shown();
  level_ = pixels;
  if (Shown() != before) update();
}

int MeterWidget::Shown() const {
  return std::clamp(level_, 0, std::max(0, height() - 2));
}

void MeterWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Mid));
  const QRect inside = rect().adjusted(1, 1, -1, -1);
  painter.fillRect(inside, QColor(0x10, 0x18, 0x10));
  // Green for the lower two thirds, amber and red above.
  const int amber = inside.height() * 2 / 3;
  const int red = inside.height() * 7 / 8;
  const int level = Shown();
  const auto band = [&](int from, int to, const QColor& colour) {
    const int top = std::min(to, level);
    if (top <= from) return;
    painter.fillRect(inside.left(), inside.bottom() + 1 - top, inside.width(), top - from, colour);
  };
  band(0, amber, QColor(0x35, 0xC4, 0x5A));
  band(amber, red, QColor(0xE0, 0xB0, 0x30));
  band(red, inside.height(), QColor(0xE0, 0x48, 0x38));
  for (int mark = 1; mark < 9; ++mark) {
    painter.fillRect(inside.left(), inside.bottom() - mark * inside.height() / 9,
                     mark % 3 == 0 ? inside.width() : inside.width() / 3, 1, QColor(0, 0, 0, 150));
  }
}

}  // namespace velt

#include "ui/scale_strip.h"

#include <QPainter>
#include <algorithm>

#include "ui/qt_text.h"

namespace velt {

ScaleStrip::ScaleStrip(ControlArray<Label>& labels, QWidget* parent)
    : QWidget(parent), labels_(labels) {}

void ScaleStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor ink = palette().color(QPalette::WindowText);
  painter.setPen(ink);
  int freeFrom = 0;
  for (auto& [index, label] : labels_) {
    const QString text = ToQt(label->caption.Get());
    if (!label->visible || text.isEmpty()) continue;
    const int tick = std::min(label->place.Get().left - x(), width() - 1);
    painter.fillRect(tick, 0, 1, 3, ink);
    // A text that would touch the one before it is left out; its tick stays.
    const int textWidth = fontMetrics().horizontalAdvance(text);
    const int left = std::clamp(tick - textWidth / 2, 0, std::max(0, width() - textWidth));
    if (left < freeFrom) continue;
    painter.drawText(QRect(left, 2, textWidth + 1, height() - 2), Qt::AlignLeft | Qt::AlignVCenter,
                     text);
    freeFrom = left + textWidth + 4;
  }
}

}  // namespace velt

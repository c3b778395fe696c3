#include "ui/meter_widget.h"

#include <QPalette>
#include <algorithm>

namespace velt {
namespace {

constexpr uint32_t kMarkColour = 0x96000000;  // lets the bar shine through

}  // namespace

MeterWidget::MeterWidget(QWidget* parent) : LiveWidget(parent) {}

void MeterWidget::SetLevel(int pixels) {
  const int before = Shown();
  level_ = pixels;
  if (Shown() != before) Changed();
}

int MeterWidget::Percent() const {
  return Shown() * 100 / std::max(1, height() - 2);
}

int MeterWidget::Shown() const {
  return std::clamp(level_, 0, std::max(0, height() - 2));
}

void MeterWidget::Paint(Canvas& canvas) {
  canvas.Fill(canvas.Area(), palette().color(QPalette::Mid).rgb());
  const QRect inside = canvas.Area().adjusted(1, 1, -1, -1);
  canvas.Fill(inside, 0xFF101810);
  // Green for the lower two thirds, amber and red above.
  const int amber = inside.height() * 2 / 3;
  const int red = inside.height() * 7 / 8;
  const int level = Shown();
  const auto band = [&](int from, int to, uint32_t colour) {
    const int top = std::min(to, level);
    if (top <= from) return;
    canvas.Fill({inside.left(), inside.bottom() + 1 - top, inside.width(), top - from}, colour);
  };
  band(0, amber, 0xFF35C45A);
  band(amber, red, 0xFFE0B030);
  band(red, inside.height(), 0xFFE04838);
  for (int mark = 1; mark < 9; ++mark) {
    const int width = mark % 3 == 0 ? inside.width() : inside.width() / 3;
    canvas.Fill({inside.left(), inside.bottom() - mark * inside.height() / 9, width, 1},
                kMarkColour);
  }
}

}  // namespace velt

#include "ui/scale_strip.h"

#include <QPainter>
#include <algorithm>

#include "ui/qt_text.h"

namespace velt {
namespace {

constexpr int kBeyond = 19;
constexpr int kGap = 3;

}  // namespace

ScaleStrip::ScaleStrip(ControlArray<Label>& labels, QWidget* parent)
    : QWidget(parent), labels_(labels) {}

QString ScaleStrip::Range() const {
  QString first, last;
  for (auto& [index, label] : labels_) {
    const QString text = ToQt(label->caption.Get());
    if (text.isEmpty() || !label->visible) continue;
    if (first.isEmpty()) first = text;
    last = text;
  }
  return first.isEmpty() ? first : first + " to " + last;
}

void ScaleStrip::ShowBelow(const Rectangle& place) {
  place_ = place;
  setGeometry(place.left - kBeyond, place.top, place.width + 2 * kBeyond, place.height);
  update();
}

int ScaleStrip::Stride(int widestText) const {
  const int step = labels_[1].place.Get().left - labels_[0].place.Get().left;
  int stride = 1;
  while (step > 0 && stride * step < widestText + kGap) ++stride;
  return stride;
}

void ScaleStrip::paintEvent(QPaintEvent*) {
  int widest = 0;
  for (auto& [index, label] : labels_) {
    widest = std::max(widest, fontMetrics().horizontalAdvance(ToQt(label->caption.Get())));
  }
  const int stride = Stride(widest);
  QPainter painter(this);
  const QColor ink = palette().color(QPalette::WindowText);
  painter.setPen(ink);
  for (auto& [index, label] : labels_) {
    if (!label->visible || label->caption.Get().empty()) continue;
    const int position = std::min(label->place.Get().left - place_.left, place_.width - 1);
    const int tick = kBeyond + position;
    painter.fillRect(tick, 0, 1, 3, ink);
    if (index % stride != 0) continue;
    painter.drawText(QRect(tick - widest, 2, 2 * widest + 1, height() - 2),
                     Qt::AlignHCenter | Qt::AlignVCenter, ToQt(label->caption.Get()));
  }
}

}  // namespace velt

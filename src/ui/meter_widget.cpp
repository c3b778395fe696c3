#include "ui/meter_widget.h"

#include <QEvent>
#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <array>
#include <cstdlib>

#include "spectrum/s_meter.h"

namespace velt {
namespace {

// In logical pixels from the left: the bar in its frame, marks, texts.
constexpr int kFrame = 1;
constexpr int kBar = 8;
constexpr int kMarks = kBar + 2 * kFrame + 1;
constexpr int kTexts = kMarks + 5;
// A bar that noise moves by less is not worth a new picture at every tick.
constexpr int kUnseen = 1;
// With fewer pixels to the unit only the marks that have a text are drawn.
constexpr int kRoomyUnit = 4;

constexpr uint32_t kTrough = 0xFF101820;
// Told apart by everybody, red-green blind or not.
constexpr uint32_t kUpToS9 = 0xFF2CC8EA;
constexpr uint32_t kAboveS9 = 0xFFF5A623;
constexpr int kS9 = 9;

struct Mark {
  int unit;
  const char* text;
};
constexpr std::array<Mark, 4> kTextMarks{{{3, "3"}, {6, "6"}, {kS9, "9"}, {12, "+"}}};

int UnitHeight(int unit, int height) {
  return static_cast<int>(unit * height / kMostSUnits + 0.5);
}

}  // namespace

MeterWidget::MeterWidget(QWidget* parent) : LiveWidget(parent) {}

void MeterWidget::SetLevel(int32_t twips) {
  level_ = twips;
  const int bar = BarHeight();
  if (std::abs(bar - shownBar_) > kUnseen || (bar == 0 && shownBar_ != 0)) Changed();
}

int MeterWidget::Percent() const {
  return SMeterBar(level_, 100);
}

int MeterWidget::BarHeight() const {
  return SMeterBar(level_, qRound((height() - 2 * kFrame) * devicePixelRatioF()));
}

void MeterWidget::Paint(Canvas& canvas) {
  if (scale_.size() != canvas.Area().size()) DrawScale(canvas.Area().size());
  canvas.Copy(scale_);
  const int pen = canvas.Pen();
  const int bottom = canvas.Area().height() - pen;
  const int most = bottom - pen;
  const int bar = SMeterBar(level_, most);
  shownBar_ = bar;
  const int lower = std::min(bar, UnitHeight(kS9, most));
  const int left = canvas.AtX(kFrame);
  const int width = canvas.AtX(kFrame + kBar) - left;
  canvas.Fill({left, bottom - lower, width, lower}, kUpToS9);
  canvas.Fill({left, bottom - bar, width, bar - lower}, kAboveS9);
}

void MeterWidget::DrawScale(QSize size) {
  scale_ = QImage(size, QImage::Format_RGB32);
  const QColor ink = palette().color(QPalette::WindowText);
  scale_.fill(palette().color(QPalette::Window));
  Canvas canvas(reinterpret_cast<uint32_t*>(scale_.bits()), scale_.bytesPerLine() / 4, size,
                this->size());
  const int pen = canvas.Pen();
  const int most = size.height() - 2 * pen;
  const int barEnd = canvas.AtX(kFrame + kBar);
  canvas.Fill({0, 0, barEnd + pen, size.height()}, palette().color(QPalette::Mid).rgb());
  canvas.Fill({canvas.AtX(kFrame), pen, barEnd - canvas.AtX(kFrame), most}, kTrough);
  // The upper edge of a mark is where the bar ends that reaches up to it.
  const auto at = [&](int unit) { return size.height() - pen - UnitHeight(unit, most); };
  const auto mark = [&](int unit, int length) {
    canvas.Fill({canvas.AtX(kMarks), at(unit), length * pen, pen}, ink.rgb());
  };
  if (height() >= kRoomyUnit * kMostSUnits) {
    for (int unit = 1; unit < kMostSUnits; ++unit) mark(unit, 2);
  }
  scale_.setDevicePixelRatio(double(size.height()) / std::max(1, height()));
  QPainter painter(&scale_);
  painter.setPen(ink);
  painter.setFont(font());
  const double digit = fontMetrics().capHeight() + 2;
  double free = height();
  for (const Mark& each : kTextMarks) {
    mark(each.unit, 3);
    // Wholly inside, and none over another.
    const double middle =
        std::max((at(each.unit) + pen / 2.0) / scale_.devicePixelRatio(), digit / 2);
    if (middle + digit / 2 > free + 1) continue;
    free = middle - digit / 2;
    painter.drawText(QRectF(kTexts, middle - 20, width() - kTexts, 40), Qt::AlignCenter, each.text);
  }
}

void MeterWidget::changeEvent(QEvent* event) {
  LiveWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) scale_ = {};
}

}  // namespace velt

#include "ui/scope_widget.h"

#include <QMouseEvent>
#include <QPalette>
#include <QToolTip>
#include <algorithm>
#include <utility>

namespace velt {
namespace {

// 35 %: a signal behind a line is still seen.
constexpr uint32_t kGridOpacity = 0x59000000U;
constexpr uint32_t kHalo = 0x90FFFFFFU;
constexpr uint32_t kCapEdge = 0xFFF0F4FFU;
constexpr int kCapRows = 5;
constexpr int kMovementPauseMs = 25;

int ButtonOf(const QMouseEvent& event) {
  if (event.button() == Qt::LeftButton) return 1;
  return event.button() == Qt::RightButton ? 2 : 0;
}

}  // namespace

ScopeWidget::ScopeWidget(std::function<const Raster&()> picture, QWidget* parent)
    : LiveWidget(parent), picture_(std::move(picture)) {
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setCursor(Qt::CrossCursor);
}

void ScopeWidget::Follow(const ScopeControl& control) {
  bool changed = frame_ != control.frame || back_ != control.backColour;
  frame_ = control.frame;
  back_ = control.backColour;
  const uint32_t grid = (control.gridColour & 0x00FFFFFFU) | kGridOpacity;
  changed |= vertical_.Set(control.verticalGrid, grid);
  changed |= horizontal_.Set(control.horizontalGrid, grid);
  changed |= markers_.Set(control.markers, control.markerColour);
  if (changed) Changed();
}

bool ScopeWidget::Lines::Set(const std::vector<ScopeLine>& lines, uint32_t colour) {
  if (lines_ == lines && colour_ == colour) return false;
  lines_ = lines;
  colour_ = colour;
  strokes_.clear();
  for (const ScopeLine& line : lines) {
    if (!line.visible) continue;
    if (!line.dotted) {
      strokes_.append(QLine(line.x1, line.y1, line.x2, line.y2));
      continue;
    }
    for (int y = line.y1; y <= line.y2; y += 4) {
      strokes_.append(QLine(line.x1, y, line.x1, std::min(y + 1, line.y2)));
    }
  }
  return true;
}

void ScopeWidget::Lines::Paint(Canvas& canvas) const {
  for (const QLine& stroke : strokes_) canvas.Line(stroke.p1(), stroke.p2(), colour_);
}

// Stands out from every background and from every signal: pale beside the line, a cap above it.
void ScopeWidget::Lines::PaintMarkers(Canvas& canvas) const {
  const int pen = canvas.Pen();
  for (const QLine& stroke : strokes_) {
    const int x = canvas.AtX(stroke.x1());
    const int top = canvas.AtY(stroke.y1());
    const int height = canvas.AtY(stroke.y2() + 1) - top;
    canvas.Fill({x - pen, top, pen, height}, kHalo);
    canvas.Fill({x + pen, top, pen, height}, kHalo);
    canvas.Fill({x, top, pen, height}, colour_);
    // Below the ring of the focus; each row is narrower than the one above, edged all around.
    const int edge = kCapRows * pen;
    canvas.Fill({x - edge, top + pen, 2 * edge + pen, pen}, kCapEdge);
    for (int row = 0; row < kCapRows; ++row) {
      const int half = (kCapRows - 1 - row) * pen;
      const int y = top + (row + 2) * pen;
      canvas.Fill({x - half - pen, y, 2 * half + 3 * pen, pen}, kCapEdge);
      canvas.Fill({x - half, y, 2 * half + pen, pen}, colour_);
    }
  }
}

void ScopeWidget::Paint(Canvas& canvas) {
  const Raster& picture = picture_();
  if (picture.Width() < width() || picture.Height() < height()) canvas.Fill(canvas.Area(), back_);
  canvas.Draw(picture);
  vertical_.Paint(canvas);
  horizontal_.Paint(canvas);
  markers_.PaintMarkers(canvas);
  if (hasFocus()) canvas.Frame(palette().color(QPalette::Highlight).rgb());
}

// The tool tip stands below the window: at the cursor it would hide the scale and the readout, for
// which the cursor rests there.
bool ScopeWidget::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || toolTip().isEmpty()) return LiveWidget::event(event);
  const QPoint below(mapTo(window(), QPoint()).x(), window()->height());
  QToolTip::showText(window()->mapToGlobal(below), toolTip(), this);
  return true;
}

void ScopeWidget::mouseMoveEvent(QMouseEvent* event) {
  const QPoint at = event->position().toPoint();
  if (!rect().contains(at)) return;
  movedTo_ = at.x();
  if (!pause_.isActive()) TellMovement();
}

void ScopeWidget::timerEvent(QTimerEvent*) {
  pause_.stop();
  TellMovement();
}

void ScopeWidget::TellMovement() {
  if (!movedTo_) return;
  pause_.start(kMovementPauseMs, Qt::PreciseTimer, this);
  moved.Raise(*std::exchange(movedTo_, std::nullopt));
}

void ScopeWidget::mousePressEvent(QMouseEvent* event) {
  movedTo_.reset();
  if (const int button = ButtonOf(*event)) pressed.Raise(button, event->position().toPoint().x());
}

void ScopeWidget::mouseReleaseEvent(QMouseEvent* event) {
  const int button = ButtonOf(*event);
  if (button != 0 && rect().contains(event->position().toPoint())) released.Raise(button);
}

void ScopeWidget::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  update();
}

void ScopeWidget::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  update();
}

}  // namespace velt

// The main display: the picture that the analysis made, with grid and marker lines over it.
#pragma once

#include <QBasicTimer>
#include <QLine>
#include <QVector>
#include <functional>
#include <optional>

#include "event/event.h"
#include "form/controls.h"
#include "spectrum/raster.h"
#include "ui/live_widget.h"

namespace velt {

class ScopeWidget : public LiveWidget {
 public:
  // `picture` gives what the analysis drew last; it is asked whenever the widget paints itself.
  ScopeWidget(std::function<const Raster&()> picture, QWidget* parent);

  // The mouse over the picture: x in logical pixels, buttons 1 left and 2 right. Movements are told
  // as often as the picture changes; a mouse tells of up to a thousand a second.
  Event<int> moved;
  Event<int, int> pressed;
  Event<int> released;

  // Shows the control's lines and colours, and its picture when there is a new one.
  void Follow(const ScopeControl& control);

 protected:
  bool event(QEvent* event) override;
  void Paint(Canvas& canvas) override;
  void timerEvent(QTimerEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void TellMovement();

  // Lines of one colour (0xAARRGGBB), and the strokes that they are made of.
  class Lines {
   public:
    // False when they were these already.
    bool Set(const std::vector<ScopeLine>& lines, uint32_t colour);
    void Paint(Canvas& canvas) const;
    void PaintMarkers(Canvas& canvas) const;

   private:
    std::vector<ScopeLine> lines_;
    QVector<QLine> strokes_;
    uint32_t colour_ = 0;
  };

  std::function<const Raster&()> picture_;
  QBasicTimer pause_;
  std::optional<int> movedTo_;  // during the pause
  uint32_t frame_ = 0;
  uint32_t back_ = 0;
  Lines vertical_;
  Lines horizontal_;
  Lines markers_;
};

}  // namespace velt

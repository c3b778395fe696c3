// A widget whose picture changes with every tick. Such widgets are painted together and at once,
// straight into the window's memory, while nothing lies over them: Qt's own way there costs another
// turn of the loop and waits each time until the display has read the picture before.
#pragma once

#include <QImage>
#include <QWidget>
#include <vector>

#include "ui/canvas.h"

class QBackingStore;

namespace velt {

class LiveWidget : public QWidget {
 public:
  explicit LiveWidget(QWidget* parent);

  // Paints those of a window that have changed.
  static void PaintChanged(const std::vector<LiveWidget*>& widgets);

 protected:
  // The widget has another picture.
  void Changed() { changed_ = true; }
  // Draws the whole picture on a canvas of the widget's size, in the device's own pixels.
  virtual void Paint(Canvas& canvas) = 0;

  void paintEvent(QPaintEvent* event) override;

 private:
  bool CanPaintNow() const;
  // The place in the window that it has painted.
  QRect PaintInto(QBackingStore& store);
  // Its picture for a place of that size on a device with that factor.
  const QImage& Picture(QSize size, qreal factor);

  bool changed_ = false;
  QImage picture_;  // for what has no memory of its own to draw on
};

}  // namespace velt

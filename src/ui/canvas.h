// Pixels to draw on without a painter: a picture and filled rectangles are all that the widgets
// need which change with every tick. What is drawn is named in logical pixels and lies on whole
// pixels of the device, whatever the desktop's factor is.
#pragma once

#include <QImage>
#include <QRect>
#include <cstdint>

#include "spectrum/raster.h"

namespace velt {

class Canvas {
 public:
  // Pixels are 0xFFRRGGBB, the rows `stride` pixels apart. Everything drawn is cut to `size`, in
  // pixels of the device, which `logical` pixels are spread over.
  Canvas(uint32_t* pixels, qsizetype stride, QSize size, QSize logical);
  Canvas(uint32_t* pixels, qsizetype stride, QSize size) : Canvas(pixels, stride, size, size) {}

  // All of it, in pixels of the device.
  QRect Area() const { return {{}, size_}; }
  // How wide a line of one logical pixel is, the same for all lines.
  int Pen() const { return pen_; }
  // Where a logical pixel begins.
  int AtX(int x) const { return At(x, size_.width(), logical_.width()); }
  int AtY(int y) const { return At(y, size_.height(), logical_.height()); }

  // In pixels of the device, with 0xAARRGGBB: what is there shines through a colour that is not
  // opaque.
  void Fill(const QRect& rect, uint32_t colour);
  // From one logical pixel to the other, both included; upright and level lines only.
  void Line(QPoint from, QPoint to, uint32_t colour);
  // A frame of one line along the edge.
  void Frame(uint32_t colour);
  // The picture, a logical pixel for each of its own, at the upper left corner.
  void Draw(const Raster& picture);
  // Pixels of 32 bits, one for one, at the upper left corner.
  void Copy(const QImage& pixels);

 private:
  static int At(int position, int pixels, int logical) {
    return pixels == logical ? position : (2 * position * pixels + logical) / (2 * logical);
  }
  uint32_t* Row(int y) const { return pixels_ + y * stride_; }

  uint32_t* pixels_;
  qsizetype stride_;
  QSize size_;
  QSize logical_;
  int pen_ = 1;
};

}  // namespace velt

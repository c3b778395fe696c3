// Pixels to draw on without a painter: a picture and filled rectangles are all that the widgets
// need which change with every tick.
#pragma once

#include <QRect>
#include <cstdint>

#include "spectrum/raster.h"

namespace velt {

class Canvas {
 public:
  // Pixels are 0xFFRRGGBB, the rows `stride` pixels apart. Everything drawn is cut to `size`.
  Canvas(uint32_t* pixels, qsizetype stride, QSize size);

  QRect Area() const { return {{}, size_}; }
  // With 0xAARRGGBB: what is there shines through a colour that is not opaque.
  void Fill(const QRect& rect, uint32_t colour);
  // The picture at the upper left corner.
  void Draw(const Raster& picture);

 private:
  uint32_t* Row(int y) const { return pixels_ + y * stride_; }

  uint32_t* pixels_;
  qsizetype stride_;
  QSize size_;
};

}  // namespace velt

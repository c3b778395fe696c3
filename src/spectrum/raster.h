// A picture in memory: the display and the off-screen picture that becomes it.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "spectrum/colour.h"

namespace velt {

// Pixels are 0xFFRRGGBB, rows from top to bottom without gaps between them. Every operation takes
// any coordinates and touches only what lies inside.
class Raster {
 public:
  Raster() = default;
  // Negative sizes count as 0.
  Raster(int width, int height, Colour fill = Colour());

  int Width() const { return width_; }
  int Height() const { return height_; }
  std::span<const uint32_t> Pixels() const { return pixels_; }
  // One row, y from 0 to Height() - 1.
  std::span<uint32_t> Row(int y) { return std::span(pixels_).subspan(Offset(0, y), Columns()); }
  std::span<const uint32_t> Row(int y) const {
    return std::span(pixels_).subspan(Offset(0, y), Columns());
  }

  // A new size keeps the picture's upper left part; what is added gets the colour `fill`.
  void Resize(int width, int height, Colour fill);
  void SetPixel(int x, int y, Colour colour);
  // From one point to the other, both included, with a pen that is `penWidth` pixels wide and one
  // pixel high, reaching from x - penWidth / 2 to the right: the traces are steep, and a bar's top
  // stays where its value is. Coordinates beyond +-2^29 draw nothing.
  void Line(int x1, int y1, int x2, int y2, int penWidth, Colour colour);
  // Moves the picture one row down; the top row stays, the bottom one is lost.
  void ScrollDown();

 private:
  size_t Columns() const { return static_cast<size_t>(width_); }
  size_t Offset(int x, int y) const {
    return static_cast<size_t>(y) * Columns() + static_cast<size_t>(x);
  }
  void Dash(int64_t x, int y, int penWidth, Colour colour);

  int width_ = 0;
  int height_ = 0;
  std::vector<uint32_t> pixels_;
};

}  // namespace velt

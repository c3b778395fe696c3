#include "ui/canvas.h"

#include <algorithm>
#include <span>

namespace velt {
namespace {

constexpr uint32_t kOpaque = 0xFF000000U;

uint32_t Blended(uint32_t under, uint32_t over) {
  const uint32_t alpha = over >> 24;
  uint32_t result = kOpaque;
  for (const int shift : {0, 8, 16}) {
    const uint32_t below = under >> shift & 0xFFU;
    const uint32_t above = over >> shift & 0xFFU;
    result |= (below * (255 - alpha) + above * alpha + 127) / 255 << shift;
  }
  return result;
}

}  // namespace

Canvas::Canvas(uint32_t* pixels, qsizetype stride, QSize size)
    : pixels_(pixels), stride_(stride), size_(size) {}

void Canvas::Fill(const QRect& rect, uint32_t colour) {
  const QRect inside = rect & Area();
  const bool opaque = colour >= kOpaque;
  for (int y = inside.top(); y <= inside.bottom(); ++y) {
    const std::span<uint32_t> pixels(Row(y) + inside.left(), static_cast<size_t>(inside.width()));
    if (opaque) {
      std::ranges::fill(pixels, colour);
    } else {
      for (uint32_t& pixel : pixels) pixel = Blended(pixel, colour);
    }
  }
}

void Canvas::Draw(const Raster& picture) {
  const int width = std::min(size_.width(), picture.Width());
  const int height = std::min(size_.height(), picture.Height());
  for (int y = 0; y < height; ++y) std::copy_n(picture.Row(y).data(), width, Row(y));
}

}  // namespace velt

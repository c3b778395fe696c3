#include "ui/canvas.h"

#include <algorithm>
#include <span>

namespace velt {
namespace {

constexpr uint32_t kOpaque = 0xFF000000U;
constexpr uint32_t kRedAndBlue = 0x00FF00FFU;
constexpr uint32_t kGreen = 0x0000FF00U;
// A factor of 1.5 that was rounded to whole pixels counts as 1.5.
constexpr double kRounding = 0.05;

// Two components at a time, and in parts of 256: no division for each pixel.
void Blend(std::span<uint32_t> pixels, uint32_t over) {
  const uint32_t alpha = over >> 24;
  const uint32_t part = alpha + (alpha >> 7);
  const uint32_t rest = 256 - part;
  const uint32_t redAndBlue = (over & kRedAndBlue) * part + 0x00800080U;
  const uint32_t green = (over & kGreen) * part + 0x00008000U;
  for (uint32_t& pixel : pixels) {
    pixel = kOpaque | (((pixel & kRedAndBlue) * rest + redAndBlue) >> 8 & kRedAndBlue) |
            (((pixel & kGreen) * rest + green) >> 8 & kGreen);
  }
}

}  // namespace

Canvas::Canvas(uint32_t* pixels, qsizetype stride, QSize size, QSize logical)
    : pixels_(pixels), stride_(stride), size_(size), logical_(logical) {
  if (logical_.isEmpty() || size_ == logical_) return;
  const double factor = double(size_.width()) / logical_.width();
  pen_ = std::max(1, static_cast<int>(factor + 0.5 + kRounding));
}

void Canvas::Fill(const QRect& rect, uint32_t colour) {
  const QRect inside = rect & Area();
  const bool opaque = colour >= kOpaque;
  for (int y = inside.top(); y <= inside.bottom(); ++y) {
    const std::span<uint32_t> pixels(Row(y) + inside.left(), static_cast<size_t>(inside.width()));
    if (opaque) {
      std::ranges::fill(pixels, colour);
    } else {
      Blend(pixels, colour);
    }
  }
}

void Canvas::Line(QPoint from, QPoint to, uint32_t colour) {
  const bool upright = from.x() == to.x();
  const QPoint begin(AtX(from.x()), AtY(from.y()));
  const QSize size(upright ? pen_ : AtX(to.x() + 1) - begin.x(),
                   upright ? AtY(to.y() + 1) - begin.y() : pen_);
  Fill({begin, size}, colour);
}

void Canvas::Frame(uint32_t colour) {
  const int width = size_.width();
  const int height = size_.height();
  Fill({0, 0, width, pen_}, colour);
  Fill({0, height - pen_, width, pen_}, colour);
  Fill({0, pen_, pen_, height - 2 * pen_}, colour);
  Fill({width - pen_, pen_, pen_, height - 2 * pen_}, colour);
}

void Canvas::Draw(const Raster& picture) {
  const int width = std::min(logical_.width(), picture.Width());
  const int height = std::min(logical_.height(), picture.Height());
  const int drawn = AtX(width);
  for (int y = 0; y < height; ++y) {
    const std::span<const uint32_t> source = picture.Row(y);
    int row = AtY(y);
    const int next = AtY(y + 1);
    if (row == next) continue;
    uint32_t* const first = Row(row);
    if (drawn == width) {
      std::copy_n(source.data(), width, first);
    } else {
      for (int x = 0; x < width; ++x) {
        std::fill(first + AtX(x), first + AtX(x + 1), source[static_cast<size_t>(x)]);
      }
    }
    while (++row < next) std::copy_n(first, drawn, Row(row));
  }
}

void Canvas::Copy(const QImage& pixels) {
  const int width = std::min(size_.width(), pixels.width());
  const int height = std::min(size_.height(), pixels.height());
  for (int y = 0; y < height; ++y) {
    std::copy_n(reinterpret_cast<const uint32_t*>(pixels.constScanLine(y)), width, Row(y));
  }
}

}  // namespace velt

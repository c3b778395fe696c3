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

// A colour that lets what is below shine through. Two components at a time, and in parts of 256:
// no division for each pixel.
class Glaze {
 public:
  explicit Glaze(uint32_t colour) {
    const uint32_t alpha = colour >> 24;
    const uint32_t part = alpha + (alpha >> 7);
    rest_ = 256 - part;
    redAndBlue_ = (colour & kRedAndBlue) * part + 0x00800080U;
    green_ = (colour & kGreen) * part + 0x00008000U;
  }
  uint32_t Over(uint32_t pixel) const {
    return kOpaque | (((pixel & kRedAndBlue) * rest_ + redAndBlue_) >> 8 & kRedAndBlue) |
           (((pixel & kGreen) * rest_ + green_) >> 8 & kGreen);
  }

 private:
  uint32_t rest_;
  uint32_t redAndBlue_;
  uint32_t green_;
};

}  // namespace

Canvas::Canvas(uint32_t* pixels, qsizetype stride, QSize size, QSize logical)
    : pixels_(pixels), stride_(stride), size_(size), logical_(logical) {
  if (logical_.isEmpty() || size_ == logical_) return;
  const double factor = double(size_.width()) / logical_.width();
  pen_ = std::max(1, static_cast<int>(factor + 0.5 + kRounding));
}

void Canvas::Fill(const QRect& rect, uint32_t colour) {
  const QRect inside = rect & Area();
  if (inside.isEmpty()) return;
  const bool opaque = colour >= kOpaque;
  const Glaze glaze(colour);
  const int width = inside.width();
  uint32_t* row = Row(inside.top()) + inside.left();
  for (int y = inside.top(); y <= inside.bottom(); ++y, row += stride_) {
    if (opaque) {
      std::fill_n(row, width, colour);
    } else {
      for (int x = 0; x < width; ++x) row[x] = glaze.Over(row[x]);
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

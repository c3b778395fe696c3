#include "spectrum/raster.h"

#include <algorithm>
#include <cstdlib>

namespace velt {
namespace {

constexpr int farthest = 1 << 29;

bool IsNear(int coordinate) {
  return coordinate >= -farthest && coordinate <= farthest;
}

// Where a line is on its minor axis, stepped along its major axis: at step i of n the minor
// coordinate is start + i * delta / n, rounded with halves upward. Starting in the middle gives
// the same points, so what lies outside the picture need not be walked.
class Slope {
 public:
  Slope(int64_t start, int64_t delta, int64_t steps, int64_t firstStep)
      : step_(2 * delta), whole_(2 * steps), at_(start) {
    if (delta == 0) return;
    const int64_t scaled = firstStep * step_ + steps;
    int64_t quotient = scaled / whole_;
    rest_ = scaled % whole_;
    if (rest_ < 0) {
      rest_ += whole_;
      --quotient;
    }
    at_ += quotient;
  }

  int64_t At() const { return at_; }
  void Advance() {
    if (step_ == 0) return;
    rest_ += step_;
    if (rest_ >= whole_) {
      rest_ -= whole_;
      ++at_;
    } else if (rest_ < 0) {
      rest_ += whole_;
      --at_;
    }
  }

 private:
  int64_t step_;
  int64_t whole_;
  int64_t rest_ = 0;
  int64_t at_;
};

}  // namespace

Raster::Raster(int width, int height, Colour fill)
    : width_(std::max(width, 0)),
      height_(std::max(height, 0)),
      pixels_(Columns() * static_cast<size_t>(height_), fill.Argb()) {}

void Raster::Resize(int width, int height, Colour fill) {
  if (width == width_ && height == height_) return;
  Raster resized(width, height, fill);
  const auto kept = static_cast<size_t>(std::min(width_, resized.width_));
  for (int y = 0; y < std::min(height_, resized.height_); ++y) {
    std::ranges::copy(Row(y).first(kept), resized.Row(y).begin());
  }
  *this = std::move(resized);
}

void Raster::SetPixel(int x, int y, Colour colour) {
  if (x < 0 || x >= width_ || y < 0 || y >= height_) return;
  pixels_[Offset(x, y)] = colour.Argb();
}

void Raster::Line(int x1, int y1, int x2, int y2, int penWidth, Colour colour) {
  if (!IsNear(x1) || !IsNear(y1) || !IsNear(x2) || !IsNear(y2)) return;
  const int steps = std::max(std::abs(x2 - x1), std::abs(y2 - y1));
  if (std::abs(y2 - y1) == steps) {
    if (y1 > y2) {
      std::swap(x1, x2);
      std::swap(y1, y2);
    }
    const int last = std::min(y2, height_ - 1);
    const int first = std::max(y1, 0);
    Slope x(x1, x2 - x1, steps, first - y1);
    for (int y = first; y <= last; ++y, x.Advance()) Dash(x.At(), y, penWidth, colour);
  } else {
    if (x1 > x2) {
      std::swap(x1, x2);
      std::swap(y1, y2);
    }
    const int last = std::min(x2, width_ - 1 + penWidth);
    const int first = std::max(x1, -penWidth);
    Slope y(y1, y2 - y1, steps, first - x1);
    for (int x = first; x <= last; ++x, y.Advance()) {
      if (y.At() >= 0 && y.At() < height_) Dash(x, static_cast<int>(y.At()), penWidth, colour);
    }
  }
}

void Raster::ScrollDown() {
  if (height_ < 2) return;
  std::copy_backward(pixels_.begin(), pixels_.end() - width_, pixels_.end());
}

void Raster::Dash(int64_t x, int y, int penWidth, Colour colour) {
  const int64_t left = std::max<int64_t>(x - penWidth / 2, 0);
  const int64_t right = std::min<int64_t>(x - penWidth / 2 + penWidth, width_);
  for (int64_t at = left; at < right; ++at) {
    pixels_[Offset(static_cast<int>(at), y)] = colour.Argb();
  }
}

}  // namespace velt

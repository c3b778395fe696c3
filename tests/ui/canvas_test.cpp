#include "ui/canvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace velt {
namespace {

TEST(Canvas, DrawsInsideItsSizeOnly) {
  constexpr uint32_t kGuard = 0xFF123456;
  constexpr uint32_t kGrey = 0xFF808080;
  constexpr uint32_t kWhite = 0xFFFFFFFF;
  std::vector<uint32_t> pixels(size_t{8} * 6, kGuard);
  Canvas canvas(pixels.data() + 8 + 1, 8, {5, 4});
  canvas.Fill({-3, -3, 20, 20}, kGrey);
  canvas.Draw(Raster(2, 9, Colour::FromArgb(kWhite)));
  canvas.Fill({4, 2, 9, 9}, 0x80FFFFFF);  // half of it shines through
  canvas.Fill({2, 9, 1, 1}, kWhite);
  for (int y = 0; y < 6; ++y) {
    for (int x = 0; x < 8; ++x) {
      const bool inside = x >= 1 && x < 6 && y >= 1 && y < 5;
      const uint32_t expected = !inside           ? kGuard
                                : x < 3           ? kWhite
                                : x == 5 && y > 2 ? 0xFFC0C0C0
                                                  : kGrey;
      EXPECT_EQ(pixels[static_cast<size_t>(y) * 8 + static_cast<size_t>(x)], expected)
          << x << "," << y;
    }
  }
}

TEST(Canvas, LinesAreAsWideAtEveryPlace) {
  for (const auto& [width, pen] :
       {std::pair{80, 1}, {100, 1}, {120, 2}, {140, 2}, {160, 2}, {240, 3}}) {
    std::vector<uint32_t> pixels(static_cast<size_t>(width));
    Canvas canvas(pixels.data(), width, {width, 1}, {80, 1});
    for (const int x : {10, 23, 36, 49}) canvas.Line({x, 0}, {x, 0}, 0xFFFFFFFF);
    EXPECT_EQ(std::count(pixels.begin(), pixels.end(), 0xFFFFFFFF), 4 * pen) << width;
  }
}

}  // namespace
}  // namespace velt

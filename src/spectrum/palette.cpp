#include "spectrum/palette.h"

#include <algorithm>
#include <cmath>

#include "text/numbers.h"

namespace velt {
namespace {

Colour Clamped(int red, int green, int blue) {
  const auto byte = [](int component) { return std::clamp(component, 0, 255); };
  return Colour(byte(red) | byte(green) << 8 | byte(blue) << 16);
}

// The root brightens the low end of each segment.
int Component(double fraction) {
  if (!(fraction >= 0.0)) return 0;
  return RoundHalfEven(std::sqrt(fraction) * 255.0).value_or(0) & 0xFF;
}

}  // namespace

Colour PaletteValue(int32_t value, int32_t range) {
  if (range < 1) return Colour();
  const double q = range / 4.0;
  double blue = 0.0;
  double green = 0.0;
  double red = 0.0;
  if (value < q) {
    blue = value / q;
  } else if (value < 2 * q) {
    blue = 1 - (value - q) / q;
    green = 1 - blue;
  } else if (value < 3 * q) {
    green = 2 - (value - q) / q;
    red = 1 - green;
  } else {
    blue = (value - 3 * q) / q;
    red = 1 - blue;
  }
  return Colour(Component(red) | Component(green) << 8 | Component(blue) << 16);
}

void WaterPalette::InitWaterColor(int16_t waterGrey, int16_t clearity) {
  const int c = clearity;
  for (int v = 0; v < entryCount; ++v) {
    Colour& entry = entries_[static_cast<size_t>(v)];
    const int half = c + v / 2;
    switch (waterGrey) {
      case 0:
        entry = v < 255 ? Clamped(half, c, half) : Clamped(c + 255, c + v - 255, c + v / 4);
        break;
      case 1:
        entry = Clamped(half, half, half);
        break;
      case 2:
        entry = Clamped(c + v, half, half);
        break;
      case 3:
        entry = Clamped(half, c + v, half);
        break;
      case 4:
        entry = Clamped(half, half, c + v);
        break;
      case 5:
        entry = PaletteValue(v, shownCount);
        break;
      default:
        return;
    }
  }
}

}  // namespace velt

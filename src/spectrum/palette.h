// The colours of the waterfall.
#pragma once

#include <array>
#include <cstdint>

#include "spectrum/colour.h"

namespace velt {

// The rainbow ramp: black, blue, green, red and back to blue over `value` from 0 to `range`.
// Outside of that, and for a range below 1, components that cannot be formed are 0.
Colour PaletteValue(int32_t value, int32_t range);

class WaterPalette {
 public:
  static constexpr int entryCount = 525;
  // The strengths that are told apart; a stronger one starts over at entry 0. The last entry is
  // therefore never shown.
  static constexpr int shownCount = 524;

  // Builds all entries for a scheme (0 common, 1 grey, 2 red, 3 green, 4 blue, 5 rainbow; any
  // other leaves the entries as they are) and a brightness that is added to every component.
  void InitWaterColor(int16_t waterGrey, int16_t clearity);

  // `index` from 0 to entryCount - 1.
  Colour operator[](int index) const { return entries_[static_cast<size_t>(index)]; }

 private:
  std::array<Colour, entryCount> entries_{};
};

}  // namespace velt

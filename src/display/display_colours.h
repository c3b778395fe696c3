// The user's display colours, as the platform's colour integers (red in the low byte; a value with
// the high bit set is a system colour).
#pragma once

#include <array>
#include <cstdint>

namespace velt {

inline constexpr int32_t kSystemButtonFace = static_cast<int32_t>(0x8000000FU);

struct DisplayColours {
  int32_t scope = 6559488;  // background of the display
  int32_t grid = 0;
  int32_t menu = kSystemButtonFace;
  int32_t spectrum = 16744749;  // spectrum trace
  int32_t oscilloscope = 255;
  int32_t bandWidth = 16711680;  // passband marking
  bool operator==(const DisplayColours&) const = default;
};

// The colour table: what a number of the colour dialog stands for.
inline constexpr std::array<int32_t DisplayColours::*, 6> kColourTable{
    &DisplayColours::scope,    &DisplayColours::grid,         &DisplayColours::menu,
    &DisplayColours::spectrum, &DisplayColours::oscilloscope, &DisplayColours::bandWidth};

}  // namespace velt

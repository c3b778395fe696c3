// The colours of levels in a spectrogram: black, violet, red, orange, yellow, nearly white. Each
// level is brighter than the one below it by the same amount to the eye, so that no step stands out
// that is none, and what is stronger looks so in grey and to the colour-blind, too.
#pragma once

#include <array>
#include <cstdint>

#include "spectrum/colour.h"

namespace velt {

class LevelPalette {
 public:
  LevelPalette();

  Colour operator[](uint8_t level) const { return entries_[level]; }

 private:
  std::array<Colour, 256> entries_;
};

}  // namespace velt

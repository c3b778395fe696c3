#include "spectrum/level_palette.h"

namespace velt {
namespace {

// 0xRRGGBB at equal steps of lightness (0, 9.75, 19.5 ... 97.5 in CIELAB), the hue turning from
// blue over red to yellow, as colourful as a screen shows them.
constexpr std::array<uint32_t, 11> kAnchors{0x000000, 0x041942, 0x181396, 0x7D0A78,
                                            0xB31056, 0xDF2827, 0xE6670B, 0xE19712,
                                            0xDAC118, 0xDFE42E, 0xF7FFA0};

uint32_t Between(uint32_t from, uint32_t to, size_t share, size_t whole) {
  uint32_t mixed = 0;
  for (const uint32_t shift : {0U, 8U, 16U}) {
    const size_t low = from >> shift & 0xFFU;
    const size_t high = to >> shift & 0xFFU;
    mixed |= static_cast<uint32_t>((low * (whole - share) + high * share + whole / 2) / whole)
             << shift;
  }
  return mixed;
}

}  // namespace

LevelPalette::LevelPalette() {
  const size_t whole = entries_.size() - 1;
  for (size_t i = 0; i <= whole; ++i) {
    const size_t at = i * (kAnchors.size() - 1);
    const size_t anchor = at / whole;
    const uint32_t next = kAnchors[anchor + (i < whole ? 1 : 0)];
    entries_[i] = Colour::FromArgb(Between(kAnchors[anchor], next, at % whole, whole));
  }
}

}  // namespace velt

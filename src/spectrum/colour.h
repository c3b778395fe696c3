// Colours as the settings keep them and as pixels hold them.
#pragma once

#include <cstdint>
#include <optional>

namespace velt {

// The index of a system colour (0x80000000 + index, so a negative number); empty for a plain
// colour. Whoever knows the desktop's colours resolves these before anything is drawn.
constexpr std::optional<int> SystemColourIndex(int32_t value) {
  if (value >= 0) return std::nullopt;
  return value & 0x7FFFFFFF;
}

// One opaque colour, converted from a colour integer (red in the low byte, then green, then blue)
// once, so that drawing copies pixels as they are.
class Colour {
 public:
  constexpr Colour() = default;
  // Only the low 24 bits count.
  constexpr explicit Colour(int32_t value) {
    const auto bits = static_cast<uint32_t>(value);
    argb_ = 0xFF000000U | (bits & 0xFFU) << 16 | (bits & 0xFF00U) | (bits >> 16 & 0xFFU);
  }
  static constexpr Colour FromArgb(uint32_t argb) {
    Colour colour;
    colour.argb_ = 0xFF000000U | argb;
    return colour;
  }

  // 0xFFRRGGBB.
  constexpr uint32_t Argb() const { return argb_; }
  // The colour integer.
  constexpr int32_t Value() const {
    return static_cast<int32_t>((argb_ & 0xFFU) << 16 | (argb_ & 0xFF00U) | (argb_ >> 16 & 0xFFU));
  }
  constexpr bool operator==(const Colour&) const = default;

 private:
  uint32_t argb_ = 0xFF000000U;
};

}  // namespace velt

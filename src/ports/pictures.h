// What becomes of pictures outside of the program: the clipboard and picture files.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace velt {

// Pixels are 0xFFRRGGBB, rows from top to bottom without gaps between them.
struct PictureView {
  int width = 0;
  int height = 0;
  std::span<const uint32_t> pixels;
};

class Pictures {
 public:
  virtual ~Pictures() = default;

  // Empties the clipboard and puts the picture there. A failure is not told.
  virtual void CopyToClipboard(const PictureView& picture) = 0;

  // The bytes of a PNG file; empty when it cannot be made.
  virtual std::string Png(const PictureView& picture) const = 0;
};

}  // namespace velt

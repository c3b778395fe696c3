#include "spectrum/bitmap_file.h"

namespace velt {
namespace {

constexpr size_t kHeaders = 54;
constexpr uint32_t kInformationHeader = 40;
constexpr uint32_t kPixelsPerMetre = 3780;  // 96 to the inch

// Numbers stand with their lowest byte first.
void Append(std::string& bytes, uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
}

}  // namespace

std::string BitmapFile(const Raster& picture) {
  const auto width = static_cast<uint32_t>(picture.Width());
  const auto height = static_cast<uint32_t>(picture.Height());
  const uint32_t rowBytes = (width * 3 + 3) / 4 * 4;
  const uint32_t pixelBytes = rowBytes * height;
  std::string bytes = "BM";
  bytes.reserve(kHeaders + pixelBytes);
  Append(bytes, kHeaders + pixelBytes, 4);
  Append(bytes, 0, 4);  // reserved
  Append(bytes, kHeaders, 4);
  Append(bytes, kInformationHeader, 4);
  Append(bytes, width, 4);
  Append(bytes, height, 4);
  Append(bytes, 1, 2);   // planes
  Append(bytes, 24, 2);  // bits to the pixel
  Append(bytes, 0, 4);   // no compression
  Append(bytes, pixelBytes, 4);
  Append(bytes, kPixelsPerMetre, 4);
  Append(bytes, kPixelsPerMetre, 4);
  Append(bytes, 0, 4);  // colours of a palette
  Append(bytes, 0, 4);  // and how many of them matter
  for (int y = picture.Height() - 1; y >= 0; --y) {
    for (const uint32_t pixel : picture.Row(y)) Append(bytes, pixel, 3);
    bytes.append(rowBytes - width * 3, '\0');
  }
  return bytes;
}

}  // namespace velt

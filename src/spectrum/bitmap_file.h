// A picture as a bitmap file, the platform's plainest format.
#pragma once

#include <string>

#include "spectrum/raster.h"

namespace velt {

// A file of 24 bits to the pixel without compression: file header of 14 bytes, information header
// of 40 (BITMAPFILEHEADER, BITMAPINFOHEADER), then rows from the bottom to the top, each filled up
// to whole groups of 4 bytes.
std::string BitmapFile(const Raster& picture);

}  // namespace velt

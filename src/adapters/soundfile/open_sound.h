// The sound library's way to a file, which is another one on each operating system.
#pragma once

#include <sndfile.h>

#include <filesystem>

namespace velt {

// Opens a sound file for reading, whatever its name is made of; null when it is none. The library
// sees the name too: it tells files without a header by its ending.
SNDFILE* OpenSound(const std::filesystem::path& path, SF_INFO& info);

}  // namespace velt

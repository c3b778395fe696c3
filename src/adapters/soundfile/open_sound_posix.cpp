#include "adapters/soundfile/open_sound.h"

namespace velt {

SNDFILE* OpenSound(const std::filesystem::path& path, SF_INFO& info) {
  // The bytes of the name are the name.
  return sf_open(path.c_str(), SFM_READ, &info);
}

}  // namespace velt

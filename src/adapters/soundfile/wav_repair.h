// WAV files whose writer never came to correct the lengths in the header, or that lost their end.
#pragma once

#include <sndfile.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velt {

// Four bytes of a file that are to be read otherwise than they stand there.
struct BytePatch {
  int64_t offset = 0;
  std::array<char, 4> bytes{};
};

struct WavRepair {
  std::vector<BytePatch> patches;
  std::string warning;  // what is wrong with the file, for people
};

// How to read a RIFF/WAVE file up to its real end; empty when its lengths are right or when it is
// no such file.
std::optional<WavRepair> FindWavRepair(const std::filesystem::path& path);

// A file as it would be with its header repaired, for the sound library to read. Nothing is
// written.
class PatchedFile {
 public:
  PatchedFile(const std::filesystem::path& path, std::vector<BytePatch> patches);

  // The handle refers to this object, which has to outlive it; null when it is no sound file.
  SNDFILE* OpenSound(SF_INFO& info);

 private:
  static PatchedFile& From(void* user) { return *static_cast<PatchedFile*>(user); }
  sf_count_t Seek(sf_count_t offset, int whence);
  sf_count_t Read(char* target, sf_count_t count);

  std::ifstream file_;
  std::vector<BytePatch> patches_;
  int64_t size_ = 0;
  int64_t position_ = 0;
};

}  // namespace velt

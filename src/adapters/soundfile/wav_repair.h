// WAV files whose header tells another length than they have: their writer never came to correct
// it, the file lost its end, or it is longer than a header of 32 bits can tell.
#pragma once

#include <sndfile.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace velt {

// How the file is to be read otherwise than it stands there.
struct WavRepair {
  static constexpr int64_t kBeginReplaced = 12;  // bytes of the file

  std::string begin;           // instead of the file's first bytes
  int64_t dataSizeOffset = 0;  // in the file; there the sound's length in bytes stands
  uint32_t dataSize = 0;       // instead of it
  std::string warning;         // what is wrong with the file, for people
};

// How to read a RIFF/WAVE file up to its real end; empty when its lengths are right or when it is
// no such file.
std::optional<WavRepair> FindWavRepair(const std::filesystem::path& path);

// A file as it would be with its header repaired, for the sound library to read. Nothing is
// written.
class PatchedFile {
 public:
  PatchedFile(const std::filesystem::path& path, WavRepair repair);

  // The handle refers to this object, which has to outlive it; null when it is no sound file.
  SNDFILE* OpenSound(SF_INFO& info);

 private:
  static PatchedFile& From(void* user) { return *static_cast<PatchedFile*>(user); }
  sf_count_t Seek(sf_count_t offset, int whence);
  sf_count_t Read(char* target, sf_count_t count);

  // Where what stands in the file is read.
  int64_t ShiftedFrom(int64_t offset) const {
    return offset - WavRepair::kBeginReplaced + static_cast<int64_t>(repair_.begin.size());
  }
  void Overlay(std::string_view bytes, int64_t offset, char* target, int64_t got) const;

  std::ifstream file_;
  WavRepair repair_;
  int64_t size_ = 0;
  int64_t position_ = 0;
};

}  // namespace velt

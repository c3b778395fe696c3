// A WAV file of 16-bit stereo PCM that is whole whenever it was committed, and goes on in a second
// one when its lengths would not fit into the header any more.
#pragma once

#include <sndfile.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

namespace velt {

// All functions wait for the disk and return the system's error number, 0 for success.
class WavFile {
 public:
  static constexpr size_t kFrameBytes = 4;
  // A header tells lengths in 32 bits, of the sound and of all behind its own first 8 bytes.
  static constexpr uint64_t kMostFrames = (0xFFFF'FFFF - 64) / kFrameBytes;

  WavFile(std::filesystem::path wanted, int32_t rateHz, uint64_t mostFrames);
  ~WavFile();  // finishes
  WavFile(const WavFile&) = delete;
  WavFile& operator=(const WavFile&) = delete;

  // Makes the file under the wanted name or the first free one with "_2", "_3" ... before its
  // ending.
  int Create();
  const std::filesystem::path& Path() const { return path_; }  // empty: none was made

  // Samples of both channels in turns.
  int Append(std::span<const int16_t> samples);

  // Brings the header up to date; with `toDisk` nothing written so far is lost in a power cut.
  // ENOENT when the file was deleted or moved, or its folder was.
  int Commit(bool toDisk);

  // Leaves a whole file, also when something failed before.
  int Finish();

 private:
  int WriteFrames(std::span<const int16_t> samples);
  int UpdateHeader();

  const std::filesystem::path wanted_;
  const int32_t rateHz_;
  const uint64_t mostFrames_;
  std::filesystem::path path_;
  int number_ = 1;
  int descriptor_ = -1;
  std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> sound_;
  uint64_t frames_ = 0;
  bool failed_ = false;
};

}  // namespace velt

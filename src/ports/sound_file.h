// A sound file as the analyser takes it: 16-bit mono at 44100 samples per second, in blocks of 512,
// whatever it holds.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "ports/audio_input.h"

namespace velt {

// The file as it is on the disk.
struct SoundFileInfo {
  int64_t frames = 0;  // samples of each channel; absurdly many where the file does not tell
  int32_t rateHz = 0;
  int32_t channels = 0;
  double DurationSeconds() const { return static_cast<double>(frames) / rateHz; }
};

class SoundFile {
 public:
  virtual ~SoundFile() = default;

  // Returns one line for people, with the file's name, when there is not at least one whole block
  // to read; empty on success. Closes what was open.
  virtual std::string Open(const std::filesystem::path& path) = 0;

  // Valid after a successful Open.
  virtual SoundFileInfo Info() const = 0;

  // One line for people about a file that is read as far as it goes: cut off or never finished;
  // empty when nothing is wrong. Complete only once the end was reached.
  virtual std::string Warning() const = 0;

  // The next block; false at the end. A last incomplete block is left out.
  virtual bool ReadBlock(std::span<int16_t, kBlockSamples> block) = 0;

  // Back to the first block; false when the file cannot be read any more.
  virtual bool Rewind() = 0;
};

}  // namespace velt

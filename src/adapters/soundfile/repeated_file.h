// A sound file played over and over, as a source of samples without an end.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "adapters/soundfile/sound_file_reader.h"

namespace velt {

class RepeatedFile {
 public:
  explicit RepeatedFile(std::filesystem::path path) : path_(std::move(path)) {}

  // Starts at the beginning of the file. Returns one line for people when it cannot be read, empty
  // on success.
  std::string Open();

  // The next samples; false when the file cannot be read any more.
  bool Read(std::span<int16_t> samples);
  bool Skip(uint64_t samples);

  std::string Warning() const { return reader_.Warning(); }

 private:
  bool NextBlock();

  std::filesystem::path path_;
  SoundFileReader reader_;
  std::array<int16_t, kBlockSamples> block_{};
  size_t used_ = kBlockSamples;  // of block_
};

}  // namespace velt

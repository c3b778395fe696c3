// Any sound file as the analyser wants it: 16-bit mono at 44100 samples per second, in blocks of
// 512. More channels are averaged, other rates are resampled. Memory does not depend on the file.
#pragma once

#include <soxr.h>

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "adapters/soundfile/mono_decoder.h"
#include "ports/audio_input.h"

namespace velt {

// The file as it is on the disk.
struct SoundFileInfo {
  int64_t frames = 0;  // samples of each channel
  int32_t rateHz = 0;
  int32_t channels = 0;
  double DurationSeconds() const { return static_cast<double>(frames) / rateHz; }
};

class SoundFileReader {
 public:
  // Returns one line for people, with the file's name, when there is not at least one whole block
  // to read; empty on success. Closes what was open.
  std::string Open(const std::filesystem::path& path);

  // Valid after a successful Open.
  SoundFileInfo Info() const;

  // One line for people about a file that is read as far as it goes: cut off or never finished;
  // empty when nothing is wrong. Complete only once the end was reached.
  std::string Warning() const;

  // The next block; false at the end. A last incomplete block is left out.
  bool ReadBlock(std::span<int16_t, kBlockSamples> block);

  // Back to the first block; false when the file cannot be read any more.
  bool Rewind();

 private:
  struct ResamplerCloser {
    void operator()(soxr* state) const { soxr_delete(state); }
  };

  bool FillReady();
  void DecodeWhole();
  void DecodeAndConvert();
  bool MakeResampler();
  void Resample(std::span<const float> input);
  void AppendReady(std::span<const float> samples);

  std::filesystem::path path_;
  MonoDecoder decoder_;
  std::unique_ptr<soxr, ResamplerCloser> resampler_;  // only when the rate is another one
  std::vector<float> decoded_;
  std::vector<float> resampled_;
  std::vector<int16_t> ready_;  // from readyFrom_ on not given out yet
  size_t readyFrom_ = 0;
  bool ended_ = false;
};

}  // namespace velt

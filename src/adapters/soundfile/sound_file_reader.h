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
#include "ports/sound_file.h"

namespace velt {

class SoundFileReader : public SoundFile {
 public:
  std::string Open(const std::filesystem::path& path) override;
  SoundFileInfo Info() const override;
  std::string Warning() const override;
  bool ReadBlock(std::span<int16_t, kBlockSamples> block) override;
  bool Rewind() override;

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

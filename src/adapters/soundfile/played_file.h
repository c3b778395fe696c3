// Any sound file as it is played. One or two channels stay as they are, more are averaged; a rate
// that no sound server takes is converted.
#pragma once

#include <soxr.h>

#include <memory>
#include <vector>

#include "adapters/soundfile/mono_decoder.h"
#include "ports/played_sound.h"

namespace velt {

class PlayedFile : public PlayedSound {
 public:
  std::string Open(const std::filesystem::path& file) override;
  int32_t RateHz() const override { return rateHz_; }
  int32_t Channels() const override { return decoder_.Channels() == 2 ? 2 : 1; }
  double LengthSeconds() const override;
  std::string Warning() const override { return decoder_.Warning(); }
  size_t Read(std::span<float> values) override;

 private:
  struct ResamplerCloser {
    void operator()(soxr* state) const { soxr_delete(state); }
  };

  size_t Decode(std::span<float> values);
  size_t Resample(std::span<float> values);

  MonoDecoder decoder_;
  int32_t rateHz_ = 0;
  std::unique_ptr<soxr, ResamplerCloser> resampler_;  // only for a rate that is converted
  std::vector<float> decoded_;                        // from usedTo_ on not resampled yet
  size_t usedTo_ = 0;
  bool ended_ = false;  // the file, not the resampler
};

}  // namespace velt

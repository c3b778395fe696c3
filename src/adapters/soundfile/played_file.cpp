#include "adapters/soundfile/played_file.h"

#include <algorithm>
#include <cmath>

#include "text/paths.h"

namespace velt {
namespace {

// Radio receivers on a chip record at a million and more samples per second.
constexpr int32_t kHighestRateHz = 384000;
constexpr int32_t kConvertedRateHz = 48000;
constexpr size_t kFramesAtOnce = 4096;

float Playable(float value) {
  return std::isnan(value) ? 0.0F : std::clamp(value, -1.0F, 1.0F);
}

}  // namespace

std::string PlayedFile::Open(const std::filesystem::path& file) {
  resampler_.reset();
  decoded_.clear();
  usedTo_ = 0;
  ended_ = false;
  std::string reason = decoder_.Open(file);
  rateHz_ = decoder_.RateHz();
  if (reason.empty() && rateHz_ < 1) reason = "not a sound file that can be read";
  if (reason.empty() && rateHz_ > kHighestRateHz) {
    rateHz_ = kConvertedRateHz;
    const soxr_io_spec_t format = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_MQ, 0);
    soxr_error_t error = nullptr;
    resampler_.reset(soxr_create(decoder_.RateHz(), rateHz_, static_cast<unsigned>(Channels()),
                                 &error, &format, &quality, nullptr));
    if (error != nullptr || !resampler_) {
      reason = "a rate of " + std::to_string(decoder_.RateHz()) + " Hz cannot be played";
    }
  }
  return reason.empty() ? reason : PathText(file.filename()) + ": " + reason;
}

double PlayedFile::LengthSeconds() const {
  return static_cast<double>(decoder_.Frames()) / decoder_.RateHz();
}

size_t PlayedFile::Read(std::span<float> values) {
  const size_t got = resampler_ ? Resample(values) : Decode(values);
  std::ranges::transform(values.first(got), values.begin(), Playable);
  return got;
}

size_t PlayedFile::Decode(std::span<float> values) {
  return decoder_.Channels() <= 2 ? decoder_.ReadChannels(values) : decoder_.Read(values);
}

size_t PlayedFile::Resample(std::span<float> values) {
  const auto channels = static_cast<size_t>(Channels());
  size_t done = 0;
  while (done < values.size()) {
    if (usedTo_ == decoded_.size() && !ended_) {
      decoded_.resize(kFramesAtOnce * channels);
      const size_t got = Decode(decoded_);
      ended_ = got < decoded_.size();
      decoded_.resize(got);
      usedTo_ = 0;
    }
    // Without input the resampler gives out what it still holds.
    const bool draining = usedTo_ == decoded_.size();
    size_t used = 0;
    size_t made = 0;
    if (soxr_process(resampler_.get(), draining ? nullptr : &decoded_[usedTo_],
                     (decoded_.size() - usedTo_) / channels, &used, &values[done],
                     (values.size() - done) / channels, &made) != nullptr) {
      break;
    }
    usedTo_ += used * channels;
    done += made * channels;
    if (draining && made == 0) break;
  }
  return done;
}

}  // namespace velt

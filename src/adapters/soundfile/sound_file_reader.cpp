#include "adapters/soundfile/sound_file_reader.h"

#include <algorithm>
#include <cmath>

#include "text/paths.h"

namespace velt {
namespace {

constexpr size_t kSamplesAtOnce = 16 * kBlockSamples;
constexpr float kFullScale = 32768.0F;
constexpr double kMostTimesTheRate = 256;

int16_t ToSample(float value) {
  if (std::isnan(value)) return 0;
  // The rounding of the processor: halves go to the even neighbour.
  return static_cast<int16_t>(
      std::nearbyint(std::clamp(value * kFullScale, -kFullScale, kFullScale - 1)));
}

}  // namespace

std::string SoundFileReader::Open(const std::filesystem::path& path) {
  path_ = path;
  ready_.clear();
  readyFrom_ = 0;
  ended_ = false;
  resampler_.reset();
  std::string reason = decoder_.Open(path);
  if (reason.empty() && decoder_.RateHz() != kSampleRateHz) {
    if (!MakeResampler()) {
      reason = "a rate of " + std::to_string(decoder_.RateHz()) + " Hz cannot be used";
    }
  }
  if (reason.empty() && !FillReady()) {
    reason = "there is less than one block of " + std::to_string(kBlockSamples) + " samples";
  }
  return reason.empty() ? reason : PathText(path) + ": " + reason;
}

SoundFileInfo SoundFileReader::Info() const {
  return {
      .frames = decoder_.Frames(), .rateHz = decoder_.RateHz(), .channels = decoder_.Channels()};
}

std::string SoundFileReader::Warning() const {
  const std::string& warning = decoder_.Warning();
  return warning.empty() ? warning : PathText(path_) + ": " + warning;
}

bool SoundFileReader::ReadBlock(std::span<int16_t, kBlockSamples> block) {
  if (!FillReady()) return false;
  std::copy_n(ready_.begin() + static_cast<std::ptrdiff_t>(readyFrom_), kBlockSamples,
              block.begin());
  readyFrom_ += kBlockSamples;
  return true;
}

bool SoundFileReader::Rewind() {
  if (!decoder_.Rewind()) return Open(path_).empty();
  ready_.clear();
  readyFrom_ = 0;
  ended_ = false;
  if (resampler_ && !MakeResampler()) return false;
  return FillReady();
}

// Decodes until a whole block is there; false when the file has no more.
bool SoundFileReader::FillReady() {
  while (ready_.size() - readyFrom_ < kBlockSamples && !ended_) {
    ready_.erase(ready_.begin(), ready_.begin() + static_cast<std::ptrdiff_t>(readyFrom_));
    readyFrom_ = 0;
    if (decoder_.IsWhole() && !resampler_) {
      DecodeWhole();
    } else {
      DecodeAndConvert();
    }
  }
  return ready_.size() - readyFrom_ >= kBlockSamples;
}

void SoundFileReader::DecodeWhole() {
  const size_t before = ready_.size();
  ready_.resize(before + kSamplesAtOnce);
  const size_t got = decoder_.ReadWhole(std::span(ready_).subspan(before));
  ready_.resize(before + got);
  ended_ = got < kSamplesAtOnce;
}

void SoundFileReader::DecodeAndConvert() {
  decoded_.resize(kSamplesAtOnce);
  const size_t got = decoder_.Read(decoded_);
  ended_ = got < kSamplesAtOnce;
  const auto input = std::span(decoded_).first(got);
  if (resampler_) {
    Resample(input);
  } else {
    AppendReady(input);
  }
}

bool SoundFileReader::MakeResampler() {
  const double rate = decoder_.RateHz();
  if (rate * kMostTimesTheRate < kSampleRateHz || rate > kMostTimesTheRate * kSampleRateHz) {
    return false;
  }
  const soxr_io_spec_t format = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
  const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_MQ, 0);
  soxr_error_t error = nullptr;
  resampler_.reset(soxr_create(rate, kSampleRateHz, 1, &error, &format, &quality, nullptr));
  return error == nullptr && resampler_ != nullptr;
}

void SoundFileReader::Resample(std::span<const float> input) {
  resampled_.resize(kSamplesAtOnce);
  // Without input the resampler gives out what it still holds.
  bool draining = false;
  for (;;) {
    draining = draining || (input.empty() && ended_);
    size_t used = 0;
    size_t made = 0;
    if (soxr_process(resampler_.get(), draining ? nullptr : input.data(), input.size(), &used,
                     resampled_.data(), resampled_.size(), &made) != nullptr) {
      ended_ = true;
      return;
    }
    input = input.subspan(used);
    AppendReady(std::span(resampled_).first(made));
    const bool more = made == resampled_.size() || !input.empty();
    if (!more && (draining || !ended_)) return;
  }
}

void SoundFileReader::AppendReady(std::span<const float> samples) {
  const size_t before = ready_.size();
  ready_.resize(before + samples.size());
  std::transform(samples.begin(), samples.end(),
                 ready_.begin() + static_cast<std::ptrdiff_t>(before), ToSample);
}

}  // namespace velt

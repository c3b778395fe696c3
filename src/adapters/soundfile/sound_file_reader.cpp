#include "adapters/soundfile/sound_file_reader.h"

#include <algorithm>
#include <cmath>

namespace velt {
namespace {

constexpr size_t kSamplesAtOnce = 16 * kBlockSamples;
constexpr float kFullScale = 32768.0F;

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
    int error = 0;
    if (src_is_valid_ratio(static_cast<double>(kSampleRateHz) / decoder_.RateHz()) != 0) {
      resampler_.reset(src_new(SRC_SINC_FASTEST, 1, &error));
    }
    if (!resampler_) {
      reason = "a rate of " + std::to_string(decoder_.RateHz()) + " Hz cannot be used";
    }
  }
  if (reason.empty() && !FillReady()) {
    reason = "there is less than one block of " + std::to_string(kBlockSamples) + " samples";
  }
  return reason.empty() ? reason : path.string() + ": " + reason;
}

SoundFileInfo SoundFileReader::Info() const {
  return {
      .frames = decoder_.Frames(), .rateHz = decoder_.RateHz(), .channels = decoder_.Channels()};
}

std::string SoundFileReader::Warning() const {
  const std::string& warning = decoder_.Warning();
  return warning.empty() ? warning : path_.string() + ": " + warning;
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
  if (resampler_) src_reset(resampler_.get());
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

void SoundFileReader::Resample(std::span<const float> input) {
  resampled_.resize(kSamplesAtOnce);
  SRC_DATA data{};
  data.src_ratio = static_cast<double>(kSampleRateHz) / decoder_.RateHz();
  data.end_of_input = ended_ ? 1 : 0;
  data.data_out = resampled_.data();
  data.output_frames = static_cast<long>(resampled_.size());
  do {
    data.data_in = input.data();
    data.input_frames = static_cast<long>(input.size());
    if (src_process(resampler_.get(), &data) != 0) {
      ended_ = true;
      return;
    }
    input = input.subspan(static_cast<size_t>(data.input_frames_used));
    AppendReady(std::span(resampled_).first(static_cast<size_t>(data.output_frames_gen)));
  } while (data.output_frames_gen == data.output_frames ||
           (!input.empty() && data.input_frames_used > 0));
}

void SoundFileReader::AppendReady(std::span<const float> samples) {
  const size_t before = ready_.size();
  ready_.resize(before + samples.size());
  std::transform(samples.begin(), samples.end(),
                 ready_.begin() + static_cast<std::ptrdiff_t>(before), ToSample);
}

}  // namespace velt

#include "adapters/soundfile/mono_decoder.h"

#include <algorithm>

#include "adapters/soundfile/open_sound.h"

namespace velt {

namespace fs = std::filesystem;

namespace {

// Values decoded at once, whatever the number of channels.
constexpr size_t kValuesAtOnce = 16384;

std::string ReasonNotToOpen(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::exists(status)) {
    return error && error != std::errc::no_such_file_or_directory ? error.message()
                                                                  : "no such file";
  }
  if (fs::is_directory(status)) return "this is a folder, not a sound file";
  // A pipe would hold the program until somebody writes into it.
  if (!fs::is_regular_file(status)) return "not a sound file";
  if (fs::file_size(path, error) == 0 && !error) return "the file is empty";
  // The sound library does not tell missing rights from missing sound.
  if (!std::ifstream(path)) return "the file cannot be read";
  return "";
}

}  // namespace

std::string MonoDecoder::Open(const fs::path& path) {
  sound_.reset();
  info_ = {};
  framesRead_ = 0;
  warning_.clear();
  if (std::string reason = ReasonNotToOpen(path); !reason.empty()) return reason;
  if (auto repair = FindWavRepair(path)) {
    warning_ = repair->warning;
    patched_ = std::make_unique<PatchedFile>(path, std::move(*repair));
    sound_.reset(patched_->OpenSound(info_));
  } else {
    sound_.reset(OpenSound(path, info_));
  }
  if (!sound_ || info_.channels < 1) return "not a sound file that can be read";
  return "";
}

bool MonoDecoder::IsWhole() const {
  return info_.channels == 1 && (info_.format & SF_FORMAT_SUBMASK) == SF_FORMAT_PCM_16;
}

size_t MonoDecoder::Read(std::span<float> samples) {
  const auto channels = static_cast<size_t>(info_.channels);
  const size_t most = std::max<size_t>(1, kValuesAtOnce / channels);
  frames_.resize(most * channels);
  size_t done = 0;
  while (done < samples.size()) {
    const size_t wanted = std::min(most, samples.size() - done);
    const sf_count_t got =
        sf_readf_float(sound_.get(), frames_.data(), static_cast<sf_count_t>(wanted));
    for (size_t i = 0; i < static_cast<size_t>(got); ++i) {
      const float* frame = &frames_[i * channels];
      float sum = 0;
      for (size_t channel = 0; channel < channels; ++channel) sum += frame[channel];
      samples[done++] = sum / static_cast<float>(channels);
    }
    Count(got, wanted);
    if (static_cast<size_t>(got) < wanted) break;
  }
  return done;
}

size_t MonoDecoder::ReadChannels(std::span<float> values) {
  const size_t wanted = values.size() / static_cast<size_t>(info_.channels);
  const sf_count_t got =
      sf_readf_float(sound_.get(), values.data(), static_cast<sf_count_t>(wanted));
  Count(got, wanted);
  return static_cast<size_t>(got) * static_cast<size_t>(info_.channels);
}

size_t MonoDecoder::ReadWhole(std::span<int16_t> samples) {
  const sf_count_t got =
      sf_readf_short(sound_.get(), samples.data(), static_cast<sf_count_t>(samples.size()));
  Count(got, samples.size());
  return static_cast<size_t>(got);
}

void MonoDecoder::Count(sf_count_t got, size_t wanted) {
  framesRead_ += got;
  if (static_cast<size_t>(got) < wanted && framesRead_ < info_.frames &&
      info_.frames < SF_COUNT_MAX && warning_.empty()) {
    warning_ = "the file is damaged or cut off, it is read as far as it goes";
  }
}

bool MonoDecoder::Rewind() {
  framesRead_ = 0;
  return sound_ && sf_seek(sound_.get(), 0, SEEK_SET) == 0;
}

}  // namespace velt

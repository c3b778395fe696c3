// One sound file, decoded at its own rate, to one channel or as it is.
#pragma once

#include <sndfile.h>

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "adapters/soundfile/wav_repair.h"

namespace velt {

class MonoDecoder {
 public:
  // Returns one line that says why the file cannot be used, empty on success.
  std::string Open(const std::filesystem::path& path);

  int64_t Frames() const { return info_.frames; }
  int32_t RateHz() const { return info_.samplerate; }
  int32_t Channels() const { return info_.channels; }

  // What is wrong with the file that could be opened all the same; empty when nothing is. A file
  // that ends before its time tells it once it was read to that end.
  const std::string& Warning() const { return warning_; }

  // Whether the samples are 16-bit whole numbers of one channel, which ReadWhole gives untouched.
  bool IsWhole() const;

  // Reads up to as many samples as there is place for; fewer only at the end. 1.0 is full scale.
  size_t Read(std::span<float> samples);
  // The same with all channels of each sample one after the other.
  size_t ReadChannels(std::span<float> values);
  size_t ReadWhole(std::span<int16_t> samples);

  // Back to the first sample; false when the file cannot go back.
  bool Rewind();

 private:
  struct Closer {
    void operator()(SNDFILE* sound) const { sf_close(sound); }
  };

  void Count(sf_count_t got, size_t wanted);

  SF_INFO info_{};
  std::string warning_;
  std::unique_ptr<PatchedFile> patched_;  // behind sound_ when the header needed repair
  std::unique_ptr<SNDFILE, Closer> sound_;
  std::vector<float> frames_;
  int64_t framesRead_ = 0;
};

}  // namespace velt

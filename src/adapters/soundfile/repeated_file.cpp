#include "adapters/soundfile/repeated_file.h"

#include <algorithm>

namespace velt {

std::string RepeatedFile::Open() {
  used_ = kBlockSamples;
  return reader_.Open(path_);
}

bool RepeatedFile::NextBlock() {
  used_ = 0;
  return reader_.ReadBlock(block_) || (reader_.Rewind() && reader_.ReadBlock(block_));
}

bool RepeatedFile::Read(std::span<int16_t> samples) {
  while (!samples.empty()) {
    if (used_ == kBlockSamples && !NextBlock()) return false;
    const size_t count = std::min(samples.size(), kBlockSamples - used_);
    std::copy_n(block_.begin() + static_cast<std::ptrdiff_t>(used_), count, samples.begin());
    used_ += count;
    samples = samples.subspan(count);
  }
  return true;
}

bool RepeatedFile::Skip(uint64_t samples) {
  while (samples > 0) {
    if (used_ == kBlockSamples && !NextBlock()) return false;
    const size_t count = std::min<uint64_t>(samples, kBlockSamples - used_);
    used_ += count;
    samples -= count;
  }
  return true;
}

}  // namespace velt

// Takes what a capture stream delivers. Called on libpulse's thread, so it never waits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace velt {

class SampleSink {
 public:
  virtual void Write(std::span<const int16_t> samples) = 0;
  virtual void WriteSilence(size_t samples) = 0;

 protected:
  ~SampleSink() = default;
};

}  // namespace velt

// Sound between the thread that it comes from and the one that writes it. What a slow disk leaves
// no room for is kept as silence of the same length, so that nothing moves in time.
#pragma once

#include <cstdint>
#include <mutex>
#include <span>
#include <vector>

namespace velt {

// Every function may be called from any thread; none allocates.
class FrameQueue {
 public:
  explicit FrameQueue(size_t samples) : samples_(samples) {}

  // Returns how many samples in a row there was no room for up to now.
  uint64_t Write(std::span<const int16_t> samples);
  uint64_t WriteSilence(size_t count);

  // The oldest samples; how many there were.
  size_t Take(std::span<int16_t> target);

 private:
  template <class Copy>
  uint64_t Append(size_t count, const Copy& copy);

  std::mutex mutex_;
  std::vector<int16_t> samples_;
  uint64_t written_ = 0;
  uint64_t taken_ = 0;
  uint64_t missing_ = 0;  // come after all that is in the queue
};

}  // namespace velt

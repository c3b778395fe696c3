#include "adapters/soundfile/frame_queue.h"

#include <algorithm>

namespace velt {

template <class Copy>
uint64_t FrameQueue::Append(size_t count, const Copy& copy) {
  const std::lock_guard lock(mutex_);
  if (missing_ > 0 || samples_.size() - (written_ - taken_) < count) return missing_ += count;
  for (size_t done = 0; done < count;) {
    const size_t at = (written_ + done) % samples_.size();
    const size_t piece = std::min(count - done, samples_.size() - at);
    copy(done, piece, samples_.begin() + static_cast<ptrdiff_t>(at));
    done += piece;
  }
  written_ += count;
  return 0;
}

uint64_t FrameQueue::Write(std::span<const int16_t> samples) {
  return Append(samples.size(), [samples](size_t from, size_t count, auto target) {
    std::ranges::copy(samples.subspan(from, count), target);
  });
}

uint64_t FrameQueue::WriteSilence(size_t count) {
  return Append(count,
                [](size_t, size_t piece, auto target) { std::fill_n(target, piece, int16_t{0}); });
}

size_t FrameQueue::Take(std::span<int16_t> target) {
  const std::lock_guard lock(mutex_);
  if (written_ == taken_) {
    const size_t count = std::min<uint64_t>(missing_, target.size());
    std::fill_n(target.begin(), count, int16_t{0});
    missing_ -= count;
    return count;
  }
  const size_t at = taken_ % samples_.size();
  const size_t count =
      std::min({target.size(), static_cast<size_t>(written_ - taken_), samples_.size() - at});
  std::copy_n(samples_.begin() + static_cast<ptrdiff_t>(at), count, target.begin());
  taken_ += count;
  return count;
}

}  // namespace velt

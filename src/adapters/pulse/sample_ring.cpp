#include "adapters/pulse/sample_ring.h"

#include <algorithm>

namespace velt {

void SampleRing::Enter(State state) {
  const std::lock_guard lock(mutex_);
  state_ = state;
}

void SampleRing::Deliver() {
  const std::lock_guard lock(mutex_);
  if (state_ != State::Held) return;
  state_ = State::Delivering;
  taken_ = written_;
}

void SampleRing::Write(std::span<const int16_t> samples) {
  const std::lock_guard lock(mutex_);
  if (state_ != State::Delivering) return;
  const size_t skipped = samples.size() - std::min(samples.size(), kBlockSamples);
  written_ += skipped;
  for (const int16_t sample : samples.subspan(skipped)) Append(sample);
}

void SampleRing::WriteSilence(size_t count) {
  const std::lock_guard lock(mutex_);
  if (state_ != State::Delivering) return;
  const size_t skipped = count - std::min(count, kBlockSamples);
  written_ += skipped;
  for (size_t i = skipped; i < count; ++i) Append(0);
}

TakeResult SampleRing::TakeNewest(std::span<int16_t, kBlockSamples> block) {
  const std::lock_guard lock(mutex_);
  if (state_ == State::Closed) return TakeResult::Gone;
  if (state_ == State::Held || written_ - taken_ < kBlockSamples) return TakeResult::NotYet;
  // The oldest sample of a full ring is where the next one would be written.
  const auto oldest = samples_.begin() + static_cast<ptrdiff_t>(written_ % kBlockSamples);
  std::copy(samples_.begin(), oldest, std::copy(oldest, samples_.end(), block.begin()));
  taken_ = written_;
  return TakeResult::Block;
}

}  // namespace velt

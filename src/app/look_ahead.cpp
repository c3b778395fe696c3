#include "app/look_ahead.h"

namespace velt {

const LookAhead::Block* LookAhead::Next() {
  while (!ended_ && held_ < ring_.size()) {
    ended_ = !file_.ReadBlock(ring_[(next_ + held_) % ring_.size()]);
    if (!ended_) ++held_;
  }
  if (held_ == 0) return nullptr;
  const Block* const block = &ring_[next_];
  next_ = (next_ + 1) % ring_.size();
  --held_;
  return block;
}

}  // namespace velt

// The blocks of a sound in their order, each with the word whether it is one of the last.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "ports/sound_file.h"

namespace velt {

class LookAhead {
 public:
  using Block = std::array<int16_t, kBlockSamples>;

  // `last` is how many blocks before the end count as the last ones; so many are kept in memory.
  LookAhead(SoundFile& file, size_t last) : file_(file), ring_(last + 1) {}

  // The next block, valid until the next call; null at the end.
  const Block* Next();
  // Whether that one is among the last.
  bool AmongLast() const { return held_ + 1 < ring_.size(); }

 private:
  SoundFile& file_;
  std::vector<Block> ring_;
  size_t next_ = 0;  // place in the ring
  size_t held_ = 0;  // from there on
  bool ended_ = false;
};

}  // namespace velt

// What must be let go before anything else whenever the program ends: transmitters that it keyed,
// ports whose open state keys one.
#pragma once

#include <array>
#include <atomic>

#include "ports/scheduler.h"

namespace velt {

class Releasable {
 public:
  virtual ~Releasable() = default;
  // Lets go of what this program keyed, waiting at most `limit` for it to leave.
  virtual void Release(Milliseconds limit) = 0;
  // The same from a signal handler: only what is allowed there (writes to open descriptors).
  virtual void ReleaseInCrash() noexcept = 0;
};

class ReleaseRegistry {
 public:
  // The entry must stay alive until it is removed. False when the registry is full.
  bool Add(Releasable& entry);
  void Remove(Releasable& entry);

  void ReleaseAll(Milliseconds limit);
  void ReleaseAllInCrash() noexcept;

 private:
  static constexpr size_t kEntries = 8;
  std::array<std::atomic<Releasable*>, kEntries> entries_{};
};

}  // namespace velt

// What a crash handler needs to release one transmitter: the open descriptor of its server and
// whether we keyed it. Written by the window's thread, read from a signal handler.
#pragma once

#include <atomic>

namespace velt {

class CrashLine {
 public:
  // Takes over a descriptor of its own, so that it is never another file's; -1 for none. The one
  // before is closed.
  void SetDescriptor(int descriptor);
  void SetKeyed(bool keyed) noexcept { keyed_.store(keyed); }

  // Sends the release if we keyed the rig and the link is up. Safe in a signal handler, does not
  // wait.
  void Release() const noexcept;

  CrashLine() = default;
  CrashLine(const CrashLine&) = delete;
  CrashLine& operator=(const CrashLine&) = delete;
  ~CrashLine() { SetDescriptor(-1); }

 private:
  static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);
  std::atomic<int> descriptor_{-1};
  std::atomic<bool> keyed_{false};
};

}  // namespace velt

// A disk that can be full: files cannot grow any more, names can be made.
#pragma once

#include <sys/resource.h>

#include <cerrno>
#include <csignal>

namespace velt {

// Holds for this process and for what it starts meanwhile, until the destructor at the latest.
class FullDisk {
 public:
  static constexpr int kError = EFBIG;

  FullDisk() {
    ::signal(SIGXFSZ, SIG_IGN);
    ::getrlimit(RLIMIT_FSIZE, &before_);
  }
  ~FullDisk() { Free(); }
  void Fill() const {
    const rlimit none{0, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &none);
  }
  void Free() const { ::setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

}  // namespace velt

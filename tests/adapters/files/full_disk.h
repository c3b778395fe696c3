// A folder whose disk can be full. Where the user may mount it is a disk of 64 KB (ENOSPC), else
// only files cannot grow any more (EFBIG); names can be made in both.
#pragma once

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>

namespace velt {

class FullDisk {
 public:
  // The folder exists and is empty.
  explicit FullDisk(std::filesystem::path folder) : folder_(std::move(folder)) {
    // In a view of the disks of its own, which ends with the test however that ends.
    mounted_ = ::unshare(CLONE_NEWNS) == 0 &&
               ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               ::mount("none", folder_.c_str(), "tmpfs", 0, "size=64k") == 0;
    ::signal(SIGXFSZ, SIG_IGN);
    ::getrlimit(RLIMIT_FSIZE, &before_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    Free();
    if (mounted_) ::umount2(folder_.c_str(), MNT_DETACH);
  }

  int Error() const { return mounted_ ? ENOSPC : EFBIG; }
  void Fill() {
    if (!mounted_) {
      const rlimit none{0, before_.rlim_max};
      ::setrlimit(RLIMIT_FSIZE, &none);
      return;
    }
    std::ofstream filler(folder_ / "filler", std::ios::binary);
    while (filler << std::string(4096, 'x') << std::flush) {
    }
  }
  void Free() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::filesystem::remove(folder_ / "filler");
  }

 private:
  std::filesystem::path folder_;
  bool mounted_ = false;
  rlimit before_{};
};

}  // namespace velt

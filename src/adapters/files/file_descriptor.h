// Owns an open file descriptor.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace velt {

class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~FileDescriptor() {
    if (IsOpen()) ::close(descriptor_);
  }

  bool IsOpen() const { return descriptor_ >= 0; }
  int Get() const { return descriptor_; }

  // Returns the system's error number: some disks tell only now that a write was lost.
  int Close() {
    const int descriptor = std::exchange(descriptor_, -1);
    return descriptor < 0 || ::close(descriptor) == 0 ? 0 : errno;
  }

 private:
  int descriptor_ = -1;
};

}  // namespace velt

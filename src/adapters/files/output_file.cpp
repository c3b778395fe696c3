#include "adapters/files/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velt {
namespace {

constexpr size_t kBytesAtOnce = 65536;

// Which of the program's own outputs that is; -1 for none. Through another opening of the same file
// each would write over what the other wrote.
int OwnOutput(const struct stat& status) {
  for (const int own : {STDOUT_FILENO, STDERR_FILENO}) {
    struct stat other {};
    if (::fstat(own, &other) == 0 && other.st_dev == status.st_dev &&
        other.st_ino == status.st_ino) {
      return own;
    }
  }
  return -1;
}

int WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0) {
      if (errno == EINTR) continue;
      return errno;
    }
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return 0;
}

}  // namespace

int OutputFile::Open(const std::filesystem::path& path) {
  struct stat status {};
  const bool exists = ::stat(path.c_str(), &status) == 0;
  if (exists && !S_ISDIR(status.st_mode)) {
    if (const int own = OwnOutput(status); own >= 0) {
      straight_ = FileDescriptor(::fcntl(own, F_DUPFD_CLOEXEC, 0));
      return error_ = straight_.IsOpen() ? 0 : errno;
    }
    if (!S_ISREG(status.st_mode)) {
      straight_ = FileDescriptor(::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
      return error_ = straight_.IsOpen() ? 0 : errno;
    }
    if (::access(path.c_str(), W_OK) != 0) return error_ = errno;
  }
  return error_ = whole_.emplace().Open(path);
}

int OutputFile::Write(std::string_view bytes) {
  pending_ += bytes;
  return pending_.size() < kBytesAtOnce ? error_ : WriteOut();
}

int OutputFile::Commit() {
  WriteOut();
  if (error_ == 0) error_ = whole_ ? whole_->PutInPlace(false) : straight_.Close();
  return error_;
}

int OutputFile::WriteOut() {
  if (error_ == 0) {
    error_ = whole_ ? whole_->Write(pending_) : WriteAll(straight_.Get(), pending_);
  }
  pending_.clear();
  return error_;
}

}  // namespace velt

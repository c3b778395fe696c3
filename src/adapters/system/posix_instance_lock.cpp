#include "adapters/system/posix_instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "adapters/system/home_folder.h"

namespace velt {

namespace fs = std::filesystem;

namespace {

// The folder that a variable names; empty when it does not name one by its whole path.
fs::path FolderInVariable(const char* name) {
  const char* value = std::getenv(name);
  const fs::path folder = value == nullptr ? "" : value;
  return folder.is_absolute() ? folder : fs::path();
}

fs::path LockFolder() {
  std::error_code error;
  if (fs::path folder = FolderInVariable("XDG_RUNTIME_DIR"); fs::is_directory(folder, error)) {
    return folder;
  }
  fs::path folder = FolderInVariable("XDG_CACHE_HOME");
  if (folder.empty()) {
    const fs::path home = HomeFolder();
    if (home.empty()) return {};
    folder = home / ".cache";
  }
  fs::create_directories(folder, error);
  return error ? fs::path() : folder;
}

}  // namespace

PosixInstanceLock::PosixInstanceLock() : folder_(LockFolder()) {}

PosixInstanceLock::~PosixInstanceLock() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

bool PosixInstanceLock::TryHold() {
  if (folder_.empty() || descriptor_ >= 0) return true;
  // A program started from this one must not inherit the lock and keep it.
  const int descriptor =
      ::open((folder_ / "velt-sa.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (descriptor < 0) return true;
  if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
    descriptor_ = descriptor;
    return true;
  }
  const bool heldByAnother = errno == EWOULDBLOCK;
  ::close(descriptor);
  return !heldByAnother;
}

}  // namespace velt

#include "adapters/files/disk_calls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>

#include "adapters/files/file_descriptor.h"

namespace velt {

namespace fs = std::filesystem;

namespace {

// For disks without the renaming that refuses by itself. A second name is never made over a file;
// only where there are no second names either a moment remains between the look and the renaming.
int RenameInTwoSteps(const fs::path& from, const fs::path& to) {
  const int linkError = ErrorOf(::link(from.c_str(), to.c_str()));
  if (linkError == 0) return ErrorOf(::unlink(from.c_str()));
  if (!NeedsCopy(linkError) || linkError == EXDEV) return linkError;
  struct stat status {};
  if (::lstat(to.c_str(), &status) == 0) return EEXIST;
  return errno == ENOENT ? ErrorOf(::rename(from.c_str(), to.c_str())) : errno;
}

}  // namespace

fs::path FolderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

int FollowLinks(fs::path& path) {
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks; ++i) {
    std::error_code error;
    const fs::path target = fs::read_symlink(path, error);
    if (error) return 0;
    path = target.is_absolute() ? target : path.parent_path() / target;
  }
  return ELOOP;
}

FileContent ReadRegular(const fs::path& path) {
  FileContent content;
  // Without O_NONBLOCK a pipe in the file's place would hold the window.
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0) {
    content.error = errno;
    return content;
  }
  if (!S_ISREG(status.st_mode)) {
    content.error = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return content;
  }
  std::array<char, 65536> chunk{};
  for (;;) {
    const ssize_t count = ::read(file.Get(), chunk.data(), chunk.size());
    if (count == 0) return content;
    if (count > 0) {
      content.bytes.append(chunk.data(), static_cast<size_t>(count));
    } else if (errno != EINTR) {
      content.error = errno;
      content.bytes.clear();
      return content;
    }
  }
}

bool NeedsCopy(int linkError) {
  return linkError == EXDEV || linkError == EPERM || linkError == EOPNOTSUPP ||
         linkError == ENOSYS || linkError == EMLINK;
}

int RenameWithoutReplacing(const fs::path& from, const fs::path& to) {
  const int error =
      ErrorOf(::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE));
  return error == ENOSYS || error == EINVAL ? RenameInTwoSteps(from, to) : error;
}

void FlushFolder(const fs::path& folder) {
  const FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.IsOpen()) ::fsync(opened.Get());
}

}  // namespace velt

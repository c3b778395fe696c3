#include "adapters/files/disk_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>

#include "adapters/files/file_descriptor.h"

namespace velt {

namespace fs = std::filesystem;

namespace {

// 0 when the call went well, else its error number.
int ErrorOf(int result) {
  return result == 0 ? 0 : errno;
}

fs::path FolderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

// The file that the path stands for once symbolic links are followed; it need not exist.
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

// A name in the folder that nothing has yet; the loop that creates the file makes sure of it.
fs::path SpareName(const fs::path& folder, int attempt) {
  return folder / (".velt-" + std::to_string(::getpid()) + "-" + std::to_string(attempt) + ".tmp");
}

// Calls `create` with spare names until it does not tell EEXIST. Returns its last error number.
template <class Create>
int CreateUnderSpareName(const fs::path& folder, fs::path& made, Create create) {
  constexpr int kMostAttempts = 1000;
  int error = EEXIST;
  for (int attempt = 0; attempt < kMostAttempts && error == EEXIST; ++attempt) {
    made = SpareName(folder, attempt);
    error = create(made);
  }
  return error;
}

int WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0) {
      if (errno == EINTR) continue;
      return errno;
    }
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return 0;
}

// Writes a complete, flushed file under a spare name in the folder, with the rights and the owner
// of `like` when there is one. On an error nothing is left.
int WriteBeside(const fs::path& folder, std::string_view bytes, const struct stat* like,
                fs::path& made) {
  FileDescriptor file;
  int error = CreateUnderSpareName(folder, made, [&](const fs::path& name) {
    file = FileDescriptor(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    return file.IsOpen() ? 0 : errno;
  });
  if (error != 0) return error;
  if (like != nullptr) {
    // Only the administrator may give a file away; for others it is theirs already. The owner goes
    // first, as changing it can clear rights.
    const bool ownerKept = ::fchown(file.Get(), like->st_uid, like->st_gid) == 0;
    const mode_t rights = like->st_mode & (ownerKept ? 07777U : 0777U);
    error = ErrorOf(::fchmod(file.Get(), rights));
  }
  if (error == 0) error = WriteAll(file.Get(), bytes);
  if (error == 0) error = ErrorOf(::fsync(file.Get()));
  const int closeError = file.Close();
  if (error == 0) error = closeError;
  if (error != 0) ::unlink(made.c_str());
  return error;
}

// Gives the file a second name for the backup, or copies it where the disk or the rights know no
// second names. On an error the previous backup is as it was.
int KeepBackup(const DiskFiles& files, const fs::path& file, const struct stat& fileStatus,
               const fs::path& backup) {
  fs::path made;
  int error = CreateUnderSpareName(FolderOf(backup), made, [&](const fs::path& name) {
    return ErrorOf(::link(file.c_str(), name.c_str()));
  });
  if (error == EXDEV || error == EPERM || error == EOPNOTSUPP || error == EMLINK) {
    const FileContent old = files.Read(file);
    error =
        old.error != 0 ? old.error : WriteBeside(FolderOf(backup), old.bytes, &fileStatus, made);
  }
  if (error != 0) return error;
  error = ErrorOf(::rename(made.c_str(), backup.c_str()));
  // Also after success: renaming does nothing when both names are the same file already, which
  // they are after an end between the two renames of a replacement.
  ::unlink(made.c_str());
  return error;
}

// Makes the renames of the folder last. Disks that cannot do it are no reason to call a replaced
// file not replaced.
void FlushFolder(const fs::path& folder) {
  const FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.IsOpen()) ::fsync(opened.Get());
}

// For disks without the renaming that refuses by itself. A second name is never made over a file;
// only where there are no second names either a moment remains between the look and the renaming.
int RenameInTwoSteps(const fs::path& from, const fs::path& to) {
  const int linkError = ErrorOf(::link(from.c_str(), to.c_str()));
  if (linkError == 0) return ErrorOf(::unlink(from.c_str()));
  if (linkError != EPERM && linkError != EOPNOTSUPP && linkError != EMLINK) return linkError;
  struct stat status {};
  if (::lstat(to.c_str(), &status) == 0) return EEXIST;
  return errno == ENOENT ? ErrorOf(::rename(from.c_str(), to.c_str())) : errno;
}

}  // namespace

bool DiskFiles::IsFile(const fs::path& path) const {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

bool DiskFiles::IsFolder(const fs::path& path) const {
  std::error_code error;
  return fs::is_directory(path, error);
}

FileContent DiskFiles::Read(const fs::path& path) const {
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

int DiskFiles::Replace(const fs::path& path, std::string_view bytes, bool backup) {
  fs::path target = path;
  if (const int error = FollowLinks(target); error != 0) return error;
  struct stat status {};
  const bool exists = ::lstat(target.c_str(), &status) == 0;
  if (!exists && errno != ENOENT) return errno;
  if (exists && !S_ISREG(status.st_mode)) return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;

  fs::path made;
  int error = WriteBeside(FolderOf(target), bytes, exists ? &status : nullptr, made);
  if (error != 0) return error;
  if (exists && backup) {
    fs::path kept = path;
    kept += ".bak";
    error = KeepBackup(*this, target, status, kept);
    if (error == 0) FlushFolder(FolderOf(kept));
  }
  if (error == 0) error = ErrorOf(::rename(made.c_str(), target.c_str()));
  if (error != 0) {
    ::unlink(made.c_str());
    return error;
  }
  FlushFolder(FolderOf(target));
  return 0;
}

int DiskFiles::Remove(const fs::path& path) {
  return ErrorOf(::unlink(path.c_str()));
}

int DiskFiles::Rename(const fs::path& from, const fs::path& to) {
  const int error =
      ErrorOf(::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE));
  return error == ENOSYS || error == EINVAL ? RenameInTwoSteps(from, to) : error;
}

int DiskFiles::MakeFolder(const fs::path& path) {
  std::error_code error;
  fs::create_directories(path, error);
  return error.value();
}

}  // namespace velt

#include "adapters/files/disk_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "adapters/files/disk_calls.h"
#include "adapters/files/spare_file.h"
#include "adapters/files/whole_file.h"

namespace velt {

namespace fs = std::filesystem;

bool DiskFiles::IsFile(const fs::path& path) const {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

bool DiskFiles::IsFolder(const fs::path& path) const {
  std::error_code error;
  return fs::is_directory(path, error);
}

FileContent DiskFiles::Read(const fs::path& path) const {
  return ReadRegular(path);
}

int DiskFiles::Replace(const fs::path& path, std::string_view bytes, bool backup) {
  ClearOnce(path);
  WholeFile file;
  int error = file.Open(path);
  if (error == 0) error = file.Write(bytes);
  if (error == 0) error = file.PutInPlace(backup);
  return error;
}

void DiskFiles::ClearOnce(const fs::path& path) {
  if (cleared_.insert(FolderOf(path)).second) RemoveLeftoversBeside(path);
}

int DiskFiles::Publish(const fs::path& path, std::string_view bytes) {
  ClearOnce(path);
  fs::path target = path;
  SpareFile file;
  struct stat before {};
  int error = FollowLinks(target);
  if (error != 0) return error;
  const bool replaces = ::stat(target.c_str(), &before) == 0;
  if (replaces && !S_ISREG(before.st_mode)) return S_ISDIR(before.st_mode) ? EISDIR : EINVAL;
  error = file.Create(FolderOf(target), replaces ? &before : nullptr);
  if (error == 0) error = file.Write(bytes);
  if (error == 0) error = file.Finish(SpareFile::Flush::No);
  return error == 0 ? file.RenameOver(target) : error;
}

int DiskFiles::ReplaceIfSame(const fs::path& path, std::string_view expected,
                             std::string_view bytes) {
  ClearOnce(path);
  fs::path target = path;
  SpareFile file;
  struct stat before {};
  int error = FollowLinks(target);
  if (error == 0) error = ErrorOf(::stat(target.c_str(), &before));
  if (error == 0 && Read(target).bytes != expected) error = EAGAIN;
  if (error == 0) error = file.Create(FolderOf(target), &before);
  if (error == 0) error = file.Write(bytes);
  if (error == 0) error = file.Finish(SpareFile::Flush::No);
  if (error != 0) return error;
  error = file.Exchange(target);
  if (error == EINVAL || error == ENOSYS) return file.RenameOver(target);
  // Whoever had the old file open may have written into it up to now: then it is put back.
  if (error != 0 || Read(file.Name()).bytes == expected) return error;
  error = file.Exchange(target);
  // Or it wrote a newer one, under the name, while the new file was there.
  if (error == 0 && Read(file.Name()).bytes != bytes) error = file.Exchange(target);
  return error == 0 ? EAGAIN : error;
}

std::optional<FileStamp> DiskFiles::Stamp(const fs::path& path) const {
  struct stat found {};
  if (::stat(path.c_str(), &found) != 0) return std::nullopt;
  if (!S_ISREG(found.st_mode) && !S_ISDIR(found.st_mode)) return std::nullopt;
  const auto nanoseconds = [](const timespec& time) {
    constexpr int64_t kNsOfSecond = 1'000'000'000;
    return time.tv_sec * kNsOfSecond + time.tv_nsec;
  };
  return FileStamp{static_cast<uint64_t>(found.st_size), nanoseconds(found.st_mtim), found.st_ino,
                   nanoseconds(found.st_ctim)};
}

std::vector<fs::path> DiskFiles::Names(const fs::path& folder) const {
  std::vector<fs::path> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    names.push_back(entry->path().filename());
  }
  return names;
}

int DiskFiles::Remove(const fs::path& path) {
  return ErrorOf(::unlink(path.c_str()));
}

int DiskFiles::Rename(const fs::path& from, const fs::path& to) {
  return RenameWithoutReplacing(from, to);
}

int DiskFiles::MakeFolder(const fs::path& path) {
  std::error_code error;
  fs::create_directories(path, error);
  return error.value();
}

void DiskFiles::RemoveLeftoversBeside(const fs::path& path) {
  fs::path target = path;
  if (FollowLinks(target) != 0) return;
  RemoveLeftovers(FolderOf(path));
  if (FolderOf(target) != FolderOf(path)) RemoveLeftovers(FolderOf(target));
}

int DiskFiles::RenameOver(const fs::path& from, const fs::path& to) {
  const int error = ErrorOf(::rename(from.c_str(), to.c_str()));
  if (error == 0) FlushFolder(FolderOf(to));
  return error;
}

int DiskFiles::KeepAs(const fs::path& file, const fs::path& name) {
  return Duplicate(file, name, Existing::Refused);
}

int DiskFiles::Restore(const fs::path& file, const fs::path& backup) {
  const FileContent content = Read(backup);
  if (content.error != 0) return content.error;
  const int error = Replace(file, content.bytes, false);
  if (error == 0) return 0;
  fs::path target = file;
  fs::path source = backup;
  SpareFile second;
  if (FollowLinks(target) != 0 || FollowLinks(source) != 0 ||
      second.Link(source, FolderOf(target)) != 0 || second.RenameOver(target) != 0) {
    return error;
  }
  FlushFolder(FolderOf(target));
  return 0;
}

}  // namespace velt

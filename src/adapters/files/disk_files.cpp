#include "adapters/files/disk_files.h"

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
  if (cleared_.insert(FolderOf(path)).second) RemoveLeftoversBeside(path);
  WholeFile file;
  int error = file.Open(path);
  if (error == 0) error = file.Write(bytes);
  if (error == 0) error = file.PutInPlace(backup);
  return error;
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

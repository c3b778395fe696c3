#include "adapters/files/whole_file.h"

#include <cerrno>

#include "adapters/files/disk_calls.h"

namespace velt {

namespace fs = std::filesystem;

namespace {

int Copy(const fs::path& from, const fs::path& folder, SpareFile& made) {
  struct stat status {};
  if (::stat(from.c_str(), &status) != 0) return errno;
  const FileContent content = ReadRegular(from);
  int error = content.error;
  if (error == 0) error = made.Create(folder, &status);
  if (error == 0) error = made.Write(content.bytes);
  if (error == 0) error = made.Finish();
  return error;
}

}  // namespace

int WholeFile::Open(const fs::path& path) {
  path_ = target_ = path;
  if (error_ = FollowLinks(target_); error_ != 0) return error_;
  replaces_ = ::lstat(target_.c_str(), &previous_) == 0;
  if (!replaces_ && errno != ENOENT) return error_ = errno;
  if (replaces_ && !S_ISREG(previous_.st_mode)) {
    return error_ = S_ISDIR(previous_.st_mode) ? EISDIR : EINVAL;
  }
  return error_ = file_.Create(FolderOf(target_), replaces_ ? &previous_ : nullptr);
}

int WholeFile::Write(std::string_view bytes) {
  if (error_ == 0) error_ = file_.Write(bytes);
  return error_;
}

int WholeFile::PutInPlace(bool backup) {
  if (error_ == 0) error_ = file_.Finish();
  if (error_ == 0 && replaces_ && backup) {
    fs::path kept = path_;
    kept += ".bak";
    error_ = Duplicate(target_, kept, Existing::Replaced);
  }
  if (error_ == 0) error_ = file_.RenameOver(target_);
  if (error_ == 0) FlushFolder(FolderOf(target_));
  return error_;
}

int Duplicate(fs::path from, const fs::path& to, Existing existing) {
  int error = FollowLinks(from);
  if (error != 0) return error;
  SpareFile made;
  error = made.Link(from, FolderOf(to));
  if (NeedsCopy(error)) error = Copy(from, FolderOf(to), made);
  if (error == 0) {
    error = existing == Existing::Replaced ? made.RenameOver(to) : made.RenameWithoutReplacing(to);
  }
  if (error == 0) FlushFolder(FolderOf(to));
  return error;
}

}  // namespace velt

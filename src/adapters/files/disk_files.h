// Files and folders on the disk, through the system's own calls.
#pragma once

#include <set>

#include "ports/files.h"

namespace velt {

class DiskFiles : public Files {
 public:
  // Regular files and folders, or symbolic links to them.
  bool IsFile(const std::filesystem::path& path) const override;
  bool IsFolder(const std::filesystem::path& path) const override;

  // Regular files only: a folder gives EISDIR, a device or pipe EINVAL.
  FileContent Read(const std::filesystem::path& path) const override;

  // As WholeFile does it. Before the first replacement in a folder what killed runs left there is
  // removed.
  int Replace(const std::filesystem::path& path, std::string_view bytes, bool backup) override;

  int Publish(const std::filesystem::path& path, std::string_view bytes) override;

  // The old and the new file exchange names, where the disk can do that; elsewhere the old one is
  // compared and replaced.
  int ReplaceIfSame(const std::filesystem::path& path, std::string_view expected,
                    std::string_view bytes) override;

  std::optional<FileStamp> Stamp(const std::filesystem::path& path) const override;
  std::vector<std::filesystem::path> Names(const std::filesystem::path& folder) const override;

  // A file or a symbolic link itself; ENOENT when there is none.
  int Remove(const std::filesystem::path& path) override;

  int Rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
  int MakeFolder(const std::filesystem::path& path) override;

  // The rest is for the settings. Removes what killed runs left beside the file, and beside what it
  // is a symbolic link to.
  virtual void RemoveLeftoversBeside(const std::filesystem::path& path);

  // Renames a file or a symbolic link itself over what has that name.
  virtual int RenameOver(const std::filesystem::path& from, const std::filesystem::path& to);

  // Keeps the file under a further name; EEXIST when something has it. Takes no place on the disk
  // where a file can have two names.
  virtual int KeepAs(const std::filesystem::path& file, const std::filesystem::path& name);

  // Replaces the file by its backup, which stays: by a copy, and where there is no place for one,
  // by a second name of the backup.
  virtual int Restore(const std::filesystem::path& file, const std::filesystem::path& backup);

 private:
  void ClearOnce(const std::filesystem::path& path);

  std::set<std::filesystem::path> cleared_;  // folders without leftovers
};

}  // namespace velt

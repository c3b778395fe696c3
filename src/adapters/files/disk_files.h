// Files and folders on the disk, through the system's own calls.
#pragma once

#include "ports/files.h"

namespace velt {

class DiskFiles : public Files {
 public:
  // Regular files and folders, or symbolic links to them.
  bool IsFile(const std::filesystem::path& path) const override;
  bool IsFolder(const std::filesystem::path& path) const override;

  // Regular files only: a folder gives EISDIR, a device or pipe EINVAL.
  FileContent Read(const std::filesystem::path& path) const override;

  // At every moment the file or its ".bak" is whole, and a reader of the file finds the old or the
  // new one. A symbolic link stays, its target is replaced (the ".bak" lies beside the link).
  // Permission bits are kept, the owner where the system allows it. Without a previous file the
  // ".bak" stays as it is. The folder has to exist.
  int Replace(const std::filesystem::path& path, std::string_view bytes, bool backup) override;

  // A file or a symbolic link itself; ENOENT when there is none.
  int Remove(const std::filesystem::path& path) override;

  int Rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
  int MakeFolder(const std::filesystem::path& path) override;
};

}  // namespace velt

// The system's file calls that more than one place here needs. They return the system's error
// number, 0 for success.
#pragma once

#include <cerrno>
#include <filesystem>

#include "ports/files.h"

namespace velt {

// The error number of a call that gives 0 when it went well.
inline int ErrorOf(int result) {
  return result == 0 ? 0 : errno;
}

// The folder that a file lies in; "." for a bare name.
std::filesystem::path FolderOf(const std::filesystem::path& path);

// Turns the path into that of the file it stands for once symbolic links are followed; that file
// need not exist.
int FollowLinks(std::filesystem::path& path);

// Regular files only: a folder gives EISDIR, a device or pipe EINVAL.
FileContent ReadRegular(const std::filesystem::path& path);

// Whether a file got no second name because the disk, the rights or a border between disks do not
// allow any, so that a copy is the way.
bool NeedsCopy(int linkError);

// EEXIST when the target exists, whatever it is.
int RenameWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to);

// Makes the renames of the folder last. Disks that cannot do it are no reason to call a replaced
// file not replaced.
void FlushFolder(const std::filesystem::path& folder);

}  // namespace velt

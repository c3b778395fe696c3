// A file that is written piece by piece and appears, or takes the place of what has its name, only
// once it is whole: it is written beside its target, flushed and renamed over it. What is not put
// into place leaves nothing behind.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <string_view>

#include "adapters/files/spare_file.h"

namespace velt {

// Every function returns the system's error number, 0 for success. On an error the target is
// untouched, and what follows returns the same error.
class WholeFile {
 public:
  // The folder has to exist. A symbolic link stays, its target is replaced; EISDIR for a folder,
  // EINVAL for a device or pipe. Permission bits are kept, the owner where the system allows it.
  int Open(const std::filesystem::path& path);
  int Write(std::string_view bytes);

  // With `backup` the previous file is kept with ".bak" appended, beside the link when the path is
  // one: at every moment the file or its backup is whole. Without a previous file the ".bak" stays
  // as it is.
  int PutInPlace(bool backup);

 private:
  std::filesystem::path path_;
  std::filesystem::path target_;  // the path with symbolic links followed
  struct stat previous_ {};       // of the target
  bool replaces_ = false;         // there is a target
  SpareFile file_;
  int error_ = 0;
};

// Gives `to` what the file `from` is, as a second name or, where that cannot be, as a copy with its
// rights. What has that name is replaced, or refused with EEXIST. On an error `to` is as it was.
enum class Existing { Replaced, Refused };
int Duplicate(std::filesystem::path from, const std::filesystem::path& to, Existing existing);

}  // namespace velt

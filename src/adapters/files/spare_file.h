// A file under a spare name in the folder where it is needed, until it gets its real name. What did
// not get one is removed again; what a killed run left, by RemoveLeftovers.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <string_view>

#include "adapters/files/file_descriptor.h"

namespace velt {

// Every function returns the system's error number, 0 for success.
class SpareFile {
 public:
  SpareFile() = default;
  SpareFile(const SpareFile&) = delete;
  SpareFile& operator=(const SpareFile&) = delete;
  ~SpareFile();

  // A new, empty file, with the rights and the owner of `like` when there is one.
  int Create(const std::filesystem::path& folder, const struct stat* like);
  int Write(std::string_view bytes);
  // The file is complete: only now it may be renamed. With `Flush::No` it may be lost when the
  // machine stops right afterwards.
  enum class Flush { No, Yes };
  int Finish(Flush flush = Flush::Yes);

  // Instead of a new file a second name of one that exists; complete at once.
  int Link(const std::filesystem::path& existing, const std::filesystem::path& folder);

  // Within its folder, or at least its disk.
  int RenameOver(const std::filesystem::path& target);
  int RenameWithoutReplacing(const std::filesystem::path& target);
  // This file gets the target's name, and what had it gets the spare one. EINVAL or ENOSYS where
  // the disk cannot do that.
  int Exchange(const std::filesystem::path& target);
  // What has the spare name now.
  const std::filesystem::path& Name() const { return name_; }

 private:
  FileDescriptor file_;
  std::filesystem::path name_;  // empty while there is no file
};

// Removes the spare files in the folder whose process does not live any more.
void RemoveLeftovers(const std::filesystem::path& folder);

}  // namespace velt

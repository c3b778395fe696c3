// A file that a user named to be written. A regular one takes the place of what was there once it
// is whole, and is not touched before; a device, a pipe, or what is the program's own standard
// output already, is written straight.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "adapters/files/file_descriptor.h"
#include "adapters/files/whole_file.h"

namespace velt {

// Every function returns the system's error number, 0 for success; after an error what follows
// returns the same one. Without Commit nothing was changed and nothing is left behind.
class OutputFile {
 public:
  // A file that its owner has protected against writing is not replaced: EACCES. Opening a pipe
  // waits for its reader.
  int Open(const std::filesystem::path& path);
  int Write(std::string_view bytes);  // may keep them until Commit
  int Commit();

 private:
  int WriteOut();

  std::optional<WholeFile> whole_;
  FileDescriptor straight_;  // open instead
  std::string pending_;
  int error_ = 0;
};

}  // namespace velt

// Files and folders. Every operation tells the system's error number; 0 means success.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velt {

struct FileContent {
  int error = 0;
  std::string bytes;
};

// What tells two states of a file or folder apart without reading it.
struct FileStamp {
  uint64_t bytes = 0;
  int64_t changedNs = 0;  // when its content was written last, in the disk's own steps
  uint64_t file = 0;      // another one when it was replaced
  int64_t touchedNs = 0;  // when anything of it changed last, its rights too; nobody can set it
  bool operator==(const FileStamp&) const = default;
};

class Files {
 public:
  virtual ~Files() = default;

  virtual bool IsFile(const std::filesystem::path& path) const = 0;
  virtual bool IsFolder(const std::filesystem::path& path) const = 0;

  virtual FileContent Read(const std::filesystem::path& path) const = 0;

  // Replaces the file as a whole: written beside it, flushed, renamed over it. With `backup` the
  // previous file is kept beside it with ".bak" appended. On an error the old file is untouched.
  virtual int Replace(const std::filesystem::path& path, std::string_view bytes, bool backup) = 0;

  // For files that other programs read at once and that nobody misses after a power cut: like
  // Replace, but without waiting for the disk.
  virtual int Publish(const std::filesystem::path& path, std::string_view bytes) = 0;

  // Puts `bytes` in place of what another program may be writing at this moment, if it is still
  // `expected`: EAGAIN when it is not, and then it is as it was.
  virtual int ReplaceIfSame(const std::filesystem::path& path, std::string_view expected,
                            std::string_view bytes) = 0;

  // Of a regular file or a folder; empty when there is none.
  virtual std::optional<FileStamp> Stamp(const std::filesystem::path& path) const = 0;

  // The names in a folder, in no order; none when it cannot be read.
  virtual std::vector<std::filesystem::path> Names(const std::filesystem::path& folder) const = 0;

  virtual int Remove(const std::filesystem::path& path) = 0;

  // Never over another file: EEXIST when the target exists.
  virtual int Rename(const std::filesystem::path& from, const std::filesystem::path& to) = 0;

  // Makes the folder and those above it that are missing.
  virtual int MakeFolder(const std::filesystem::path& path) = 0;
};

}  // namespace velt

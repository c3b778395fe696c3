// Files and folders. Every operation tells the system's error number; 0 means success.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velt {

struct FileContent {
  int error = 0;
  std::string bytes;
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

  virtual int Remove(const std::filesystem::path& path) = 0;

  // Never over another file: EEXIST when the target exists.
  virtual int Rename(const std::filesystem::path& from, const std::filesystem::path& to) = 0;

  // Makes the folder and those above it that are missing.
  virtual int MakeFolder(const std::filesystem::path& path) = 0;
};

}  // namespace velt

// A log file that is rotated: when it exceeds its limit it becomes FILE.1 (an older FILE.1 becomes
// FILE.2, the oldest goes) and a new one is begun. Devices and pipes are never rotated.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "adapters/files/file_descriptor.h"

namespace velt {

class LogFile {
 public:
  explicit LogFile(std::filesystem::path path, int64_t limitBytes = int64_t{1024} * 1024)
      : path_(std::move(path)), limitBytes_(limitBytes) {}

  // Opens for appending. Returns the system's error number, 0 for success.
  int Open();

  // Adds the line's end. What cannot be written is dropped: a log must not hold the program.
  void WriteLine(std::string_view line);

 private:
  void Rotate();

  static constexpr int kKept = 3;
  std::filesystem::path path_;
  int64_t limitBytes_;
  FileDescriptor file_;
  std::string line_;
};

}  // namespace velt

// A folder of its own for one test, gone when the test ends.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace velt {

class ScratchFolder {
 public:
  ScratchFolder() : path_(::mkdtemp(name_.data())) {}
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() { std::filesystem::remove_all(path_); }

  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
  void Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path_ / name, std::ios::binary) << bytes;
  }
  std::string Read(const std::string& name) const {
    std::ifstream file(path_ / name, std::ios::binary);
    return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "(no file)";
  }
  auto Entries() const { return std::distance(std::filesystem::directory_iterator(path_), {}); }

 private:
  std::string name_ = "/tmp/velt-XXXXXX";
  std::filesystem::path path_;
};

}  // namespace velt

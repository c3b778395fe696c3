// A folder of its own for one test, gone when the test ends.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace velt {

class TempFolder {
 public:
  TempFolder() : TempFolder(std::filesystem::temp_directory_path()) {}
  explicit TempFolder(const std::filesystem::path& where) {
    std::random_device random;
    do {
      path_ = where / ("velt-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& Path() const { return path_; }
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
  std::filesystem::path path_;
};

}  // namespace velt

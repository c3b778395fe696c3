// What a user does with folders, without waiting for the disk that they lie on: each call returns
// at once and `told` is called once from the loop, however long the disk takes; not at all once
// this object has ended.
#pragma once

#include <filesystem>
#include <functional>
#include <vector>

namespace velt {

struct FolderListing {
  int error = 0;  // the system's number; 0 means success
  // Names, in no order; a symbolic link is what it leads to.
  std::vector<std::filesystem::path> folders = {};
  std::vector<std::filesystem::path> files = {};  // regular ones
};

class Folders {
 public:
  virtual ~Folders() = default;

  // Nothing is told when another folder is asked for before.
  virtual void List(const std::filesystem::path& folder,
                    std::function<void(const FolderListing&)> told) = 0;

  // Both tell the system's number, 0 for success, and leave `kept` alone, also by another name of
  // its folder: EBUSY. Empty: there is none.
  virtual void Remove(const std::filesystem::path& file, const std::filesystem::path& kept,
                      std::function<void(int error)> told) = 0;
  // Never over another file: EEXIST when the target exists.
  virtual void Rename(const std::filesystem::path& from, const std::filesystem::path& to,
                      const std::filesystem::path& kept, std::function<void(int error)> told) = 0;
};

}  // namespace velt

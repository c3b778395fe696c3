// Reads folders without waiting for the disk that they lie on.
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

class FolderLister {
 public:
  virtual ~FolderLister() = default;

  // `told` is called once from the loop, however long the disk takes; not at all when another
  // folder is asked for before, or when this object ends.
  virtual void List(const std::filesystem::path& folder,
                    std::function<void(const FolderListing&)> told) = 0;
};

}  // namespace velt

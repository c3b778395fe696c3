// Does each thing on a thread of its own, which a slow disk or a server that is away may hold up.
#pragma once

#include <cstdint>
#include <memory>

#include "ports/folders.h"
#include "ports/scheduler.h"

namespace velt {

class FolderWorker : public Folders {
 public:
  explicit FolderWorker(Scheduler& scheduler);
  ~FolderWorker() override;
  FolderWorker(const FolderWorker&) = delete;
  FolderWorker& operator=(const FolderWorker&) = delete;

  void List(const std::filesystem::path& folder,
            std::function<void(const FolderListing&)> told) override;
  void Remove(const std::filesystem::path& file, const std::filesystem::path& kept,
              std::function<void(int error)> told) override;
  void Rename(const std::filesystem::path& from, const std::filesystem::path& to,
              const std::filesystem::path& kept, std::function<void(int error)> told) override;

 private:
  struct Life;
  template <typename Result>
  void Start(std::function<Result()> work, Result noThread, std::function<void(Result)> told);

  std::shared_ptr<Life> life_;
  uint64_t listing_ = 0;  // the latest one's number
};

// The same at once, on the caller's thread.
FolderListing ReadFolder(const std::filesystem::path& folder);

}  // namespace velt

// Reads each folder on a thread of its own, which a slow disk or a server that is away may hold up.
#pragma once

#include <memory>

#include "ports/folder_lister.h"
#include "ports/scheduler.h"

namespace velt {

class FolderReader : public FolderLister {
 public:
  explicit FolderReader(Scheduler& scheduler) : scheduler_(scheduler) {}
  ~FolderReader() override { Cancel(); }
  FolderReader(const FolderReader&) = delete;
  FolderReader& operator=(const FolderReader&) = delete;

  void List(const std::filesystem::path& folder,
            std::function<void(const FolderListing&)> told) override;

 private:
  struct Request;
  void Cancel();

  Scheduler& scheduler_;
  std::shared_ptr<Request> request_;  // the latest one
};

// The same at once, on the caller's thread.
FolderListing ReadFolder(const std::filesystem::path& folder);

}  // namespace velt

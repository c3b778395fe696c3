#include "adapters/files/folder_reader.h"

#include <cerrno>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace velt {

namespace fs = std::filesystem;

FolderListing ReadFolder(const fs::path& folder) {
  FolderListing listing;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    // What the folder tells of an entry's kind is enough; only links are looked at themselves.
    std::error_code unknown;
    if (entry->is_directory(unknown)) {
      listing.folders.push_back(entry->path().filename());
    } else if (entry->is_regular_file(unknown)) {
      listing.files.push_back(entry->path().filename());
    }
  }
  listing.error = error.value();
  return listing;
}

struct FolderReader::Request {
  std::mutex mutex;
  Scheduler* scheduler;  // null once it was cancelled
  std::function<void(const FolderListing&)> told;
};

void FolderReader::List(const fs::path& folder, std::function<void(const FolderListing&)> told) {
  Cancel();
  request_ = std::make_shared<Request>();
  request_->scheduler = &scheduler_;
  request_->told = std::move(told);
  const auto read = [request = request_, folder] {
    auto listing = std::make_shared<const FolderListing>(ReadFolder(folder));
    const std::lock_guard lock(request->mutex);
    if (request->scheduler == nullptr) return;
    request->scheduler->Post([request, listing] {
      if (request->scheduler != nullptr) std::exchange(request->told, {})(*listing);
    });
  };
  try {
    // Nobody waits for this thread: it ends with the disk's answer or with the program.
    std::thread(read).detach();
  } catch (const std::system_error&) {
    // The system has no thread left.
    scheduler_.Post([request = request_] {
      if (request->scheduler != nullptr) std::exchange(request->told, {})({.error = EAGAIN});
    });
  }
}

void FolderReader::Cancel() {
  const auto request = std::exchange(request_, nullptr);
  if (!request) return;
  const std::lock_guard lock(request->mutex);
  request->scheduler = nullptr;
}

}  // namespace velt

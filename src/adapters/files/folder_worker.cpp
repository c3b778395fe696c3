#include "adapters/files/folder_worker.h"

#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "adapters/files/disk_calls.h"

namespace velt {

namespace fs = std::filesystem;

namespace {

// A folder has several names: by links, and from where the program was started.
bool IsSameFile(const fs::path& file, const fs::path& other) {
  if (file == other) return true;
  std::error_code unknown;
  return file.filename() == other.filename() &&
         fs::equivalent(file.parent_path(), other.parent_path(), unknown);
}

}  // namespace

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

// Outlives the worker as long as a thread waits for its disk.
struct FolderWorker::Life {
  std::mutex mutex;
  Scheduler* scheduler;  // null once the worker has ended
};

FolderWorker::FolderWorker(Scheduler& scheduler) : life_(std::make_shared<Life>()) {
  life_->scheduler = &scheduler;
}

FolderWorker::~FolderWorker() {
  const std::lock_guard lock(life_->mutex);
  life_->scheduler = nullptr;
}

template <typename Result>
void FolderWorker::Start(std::function<Result()> work, Result noThread,
                         std::function<void(Result)> told) {
  const auto tell = [life = life_, told = std::move(told)](Result result) {
    const std::lock_guard lock(life->mutex);
    if (life->scheduler == nullptr) return;
    life->scheduler->Post([life, told, result = std::move(result)] {
      if (life->scheduler != nullptr) told(result);
    });
  };
  try {
    // Nobody waits for this thread: it ends with the disk's answer or with the program.
    std::thread([work = std::move(work), tell] { tell(work()); }).detach();
  } catch (const std::system_error&) {
    tell(std::move(noThread));
  }
}

void FolderWorker::List(const fs::path& folder, std::function<void(const FolderListing&)> told) {
  Start<FolderListing>(
      [folder] { return ReadFolder(folder); }, {.error = EAGAIN},
      [this, number = ++listing_, told = std::move(told)](const FolderListing& listing) {
        if (number == listing_) told(listing);
      });
}

void FolderWorker::Remove(const fs::path& file, const fs::path& kept,
                          std::function<void(int error)> told) {
  Start<int>(
      [file, kept] { return IsSameFile(file, kept) ? EBUSY : ErrorOf(::unlink(file.c_str())); },
      EAGAIN, std::move(told));
}

void FolderWorker::Rename(const fs::path& from, const fs::path& to, const fs::path& kept,
                          std::function<void(int error)> told) {
  Start<int>([from, to,
              kept] { return IsSameFile(from, kept) ? EBUSY : RenameWithoutReplacing(from, to); },
             EAGAIN, std::move(told));
}

}  // namespace velt

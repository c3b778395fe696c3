#include "adapters/files/spare_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "adapters/files/disk_calls.h"
#include "text/numbers.h"

namespace velt {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kStart = ".velt-";
constexpr std::string_view kEnd = ".tmp";

// Never twice the same in one process, so that no thread takes another's file for its own.
fs::path SpareName(const fs::path& folder) {
  static std::atomic<unsigned> next{0};
  std::string name(kStart);
  name += std::to_string(::getpid()) + '-' + std::to_string(next++);
  name += kEnd;
  return folder / name;
}

bool IsNumber(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

// The process that gave a file such a name; empty for any other name.
std::optional<int32_t> MakerOf(std::string_view name) {
  if (!name.starts_with(kStart) || !name.ends_with(kEnd)) return std::nullopt;
  if (name.size() < kStart.size() + kEnd.size()) return std::nullopt;
  name.remove_prefix(kStart.size());
  name.remove_suffix(kEnd.size());
  const size_t dash = name.find('-');
  if (dash == std::string_view::npos || !IsNumber(name.substr(dash + 1))) return std::nullopt;
  const std::string_view process = name.substr(0, dash);
  return IsNumber(process) ? ParseWhole(process) : std::nullopt;
}

bool Lives(pid_t process) {
  return ::kill(process, 0) == 0 || errno != ESRCH;
}

// Calls `create` with spare names until it does not tell EEXIST. Returns its last error number.
template <class Create>
int CreateUnderSpareName(const fs::path& folder, fs::path& made, Create create) {
  constexpr int kMostAttempts = 1000;
  int error = EEXIST;
  for (int attempt = 0; attempt < kMostAttempts && error == EEXIST; ++attempt) {
    fs::path name = SpareName(folder);
    error = create(name);
    if (error == 0) made = std::move(name);
  }
  return error;
}

}  // namespace

SpareFile::~SpareFile() {
  if (!name_.empty()) ::unlink(name_.c_str());
}

int SpareFile::Create(const fs::path& folder, const struct stat* like) {
  const int error = CreateUnderSpareName(folder, name_, [this](const fs::path& name) {
    file_ = FileDescriptor(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    return file_.IsOpen() ? 0 : errno;
  });
  if (error != 0 || like == nullptr) return error;
  // Only the administrator may give a file away; for others it is theirs already. The owner goes
  // first, as changing it can clear rights.
  const bool ownerKept = ::fchown(file_.Get(), like->st_uid, like->st_gid) == 0;
  const mode_t rights = like->st_mode & (ownerKept ? 07777U : 0777U);
  return ErrorOf(::fchmod(file_.Get(), rights));
}

int SpareFile::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file_.Get(), bytes.data(), bytes.size());
    if (written < 0) {
      if (errno == EINTR) continue;
      return errno;
    }
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return 0;
}

int SpareFile::Finish(Flush flush) {
  const int error = flush == Flush::Yes ? ErrorOf(::fsync(file_.Get())) : 0;
  const int closeError = file_.Close();
  return error != 0 ? error : closeError;
}

int SpareFile::Link(const fs::path& existing, const fs::path& folder) {
  return CreateUnderSpareName(folder, name_, [&existing](const fs::path& name) {
    return ErrorOf(::link(existing.c_str(), name.c_str()));
  });
}

int SpareFile::Exchange(const fs::path& target) {
  return ErrorOf(::renameat2(AT_FDCWD, name_.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE));
}

int SpareFile::RenameOver(const fs::path& target) {
  // The spare name is removed after success too: renaming does nothing when both names are the same
  // file already, which they are after an end between the two renames of a replacement.
  return ErrorOf(::rename(name_.c_str(), target.c_str()));
}

int SpareFile::RenameWithoutReplacing(const fs::path& target) {
  return velt::RenameWithoutReplacing(name_, target);
}

void RemoveLeftovers(const fs::path& folder) {
  std::vector<fs::path> found;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const auto maker = MakerOf(entry->path().filename().native());
    std::error_code unknown;
    if (maker && entry->symlink_status(unknown).type() == fs::file_type::regular &&
        !Lives(*maker)) {
      found.push_back(entry->path());
    }
  }
  for (const fs::path& path : found) ::unlink(path.c_str());
}

}  // namespace velt

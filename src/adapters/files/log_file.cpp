#include "adapters/files/log_file.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace velt {

namespace fs = std::filesystem;

int LogFile::Open() {
  // Without O_NONBLOCK a pipe that nobody reads would hold the window.
  file_ = FileDescriptor(::open(
      path_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666));
  return file_.IsOpen() ? 0 : errno;
}

void LogFile::WriteLine(std::string_view line) {
  if (!file_.IsOpen()) return;
  struct stat status {};
  const bool regular = ::fstat(file_.Get(), &status) == 0 && S_ISREG(status.st_mode);
  if (regular && status.st_size > limitBytes_) Rotate();
  line_.assign(line);
  line_ += '\n';
  [[maybe_unused]] const ssize_t written = ::write(file_.Get(), line_.data(), line_.size());
}

void LogFile::Rotate() {
  const auto numbered = [this](int n) {
    fs::path name = path_;
    name += "." + std::to_string(n);
    return name;
  };
  std::error_code ignored;
  for (int n = kKept - 1; n >= 1; --n) fs::rename(numbered(n), numbered(n + 1), ignored);
  fs::rename(path_, numbered(1), ignored);
  Open();
}

}  // namespace velt

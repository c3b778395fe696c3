#include "guardian/failure_report.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>

#include "guardian/descriptor.h"
#include "guardian/error_output.h"

namespace velt {
namespace {

void WriteLine(int descriptor, const std::string& line) {
  const std::string whole = line + "\n";
  // Nobody is left to be told of a failure to tell.
  [[maybe_unused]] const ssize_t written = ::write(descriptor, whole.data(), whole.size());
}

// As the program's own lines begin: local time with milliseconds.
std::string Stamp() {
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  const auto milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  std::tm local{};
  ::localtime_r(&seconds, &local);
  std::array<char, 32> date{};
  std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &local);
  std::array<char, 48> stamp{};
  std::snprintf(stamp.data(), stamp.size(), "%s.%03d", date.data(), static_cast<int>(milliseconds));
  return stamp.data();
}

}  // namespace

void FailureReport::Warn(const std::string& text) {
  WriteErrorLine("velt-sa: " + text);
  Note(text);
}

void FailureReport::Note(const std::string& text) {
  kept_.push_back(Stamp() + " velt.guardian " + text);
}

void FailureReport::WriteLog() {
  if (kept_.empty()) return;
  if (!logFile_.empty()) {
    const Descriptor file(::open(
        logFile_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0644));
    for (const std::string& line : kept_) {
      if (file.IsOpen()) WriteLine(file.Number(), line);
    }
  }
  kept_.clear();
}

}  // namespace velt

#include "adapters/system/linux_system_info.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string_view>
#include <vector>

#include "adapters/system/home_folder.h"
#include "text/numbers.h"
#include "text/paths.h"

namespace velt {
namespace {

// What stands behind the separator in the first line of a file that begins with `key`.
std::string ValueIn(const char* file, std::string_view key, char separator) {
  std::ifstream lines(file);
  for (std::string line; std::getline(lines, line);) {
    const size_t at = line.find(separator);
    if (at == std::string::npos || Trimmed(std::string_view(line).substr(0, at)) != key) continue;
    std::string_view value = Trimmed(std::string_view(line).substr(at + 1));
    if (value.size() > 1 && value.front() == '"' && value.back() == '"') {
      value = value.substr(1, value.size() - 2);
    }
    return std::string(value);
  }
  return "";
}

}  // namespace

std::optional<SystemVersion> LinuxSystemInfo::Version() const {
  utsname names{};
  if (::uname(&names) != 0) return std::nullopt;
  auto version = VersionIn(names.release);
  if (version) version->name = names.sysname;
  return version;
}

std::optional<SystemVersion> LinuxSystemInfo::VersionIn(const std::string& release) {
  SystemVersion version;
  const char* const end = release.data() + release.size();
  const auto major = std::from_chars(release.data(), end, version.major);
  if (major.ec != std::errc() || major.ptr == end || *major.ptr != '.') return std::nullopt;
  const auto minor = std::from_chars(major.ptr + 1, end, version.minor);
  if (minor.ec != std::errc() || version.major < 0 || version.minor < 0) return std::nullopt;
  return version;
}

std::string LinuxSystemInfo::Description() const {
  std::string text = ValueIn("/etc/os-release", "PRETTY_NAME", '=');
  utsname names{};
  if (::uname(&names) != 0) return text;
  if (!text.empty()) text += ", ";
  return text + names.sysname + " " + names.release + ", " + names.machine;
}

std::string LinuxSystemInfo::Processor() const {
  std::string name = ValueIn("/proc/cpuinfo", "model name", ':');
  if (name.empty()) name = ValueIn("/proc/cpuinfo", "Model", ':');  // of a board
  const long count = ::sysconf(_SC_NPROCESSORS_ONLN);
  if (count < 1) return name;
  return (name.empty() ? "" : name + ", ") + std::to_string(count) +
         (count == 1 ? " processor" : " processors");
}

std::string LinuxSystemInfo::SystemFolder() const {
  return "";
}

std::string LinuxSystemInfo::SpecialFolder(int32_t identifier) const {
  constexpr int32_t kProfileFolder = 40;
  return identifier == kProfileFolder ? PathText(HomeFolder()) : "";
}

std::vector<StoragePlace> LinuxSystemInfo::StoragePlaces() const {
  std::vector<StoragePlace> places{{"File system", "/"}};
  const std::filesystem::path user = HomeFolder().filename();
  for (const char* const media : {"/media", "/run/media"}) {
    std::error_code error;
    for (std::filesystem::directory_iterator entry(media / user, error), end;
         !error && entry != end; entry.increment(error)) {
      places.push_back({PathText(entry->path().filename()), entry->path()});
    }
  }
  return places;
}

std::string LinuxSystemInfo::RegistryString(RegistryRoot, const std::string&,
                                            const std::string&) const {
  return "";
}

std::optional<RegistryValue> LinuxSystemInfo::RegistryData(RegistryRoot, const std::string&,
                                                           const std::string&) const {
  return std::nullopt;
}

std::filesystem::path LinuxSystemInfo::InformationTool() const {
  const char* const path = std::getenv("PATH");
  std::istringstream folders(path == nullptr ? "" : path);
  std::vector<std::filesystem::path> places;
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (folder.starts_with('/')) places.push_back(TextPath(folder));
  }
  for (const char* tool : {"hardinfo2", "hardinfo", "kinfocenter", "mate-system-monitor",
                           "gnome-system-monitor", "lshw-gtk"}) {
    for (const std::filesystem::path& folder : places) {
      std::filesystem::path program = folder / tool;
      if (::access(program.c_str(), X_OK) == 0) return program;
    }
  }
  return {};
}

}  // namespace velt

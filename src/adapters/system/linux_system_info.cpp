#include "adapters/system/linux_system_info.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <sstream>
#include <vector>

#include "adapters/system/home_folder.h"
#include "text/paths.h"

namespace velt {

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

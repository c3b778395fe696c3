#include "platform/platform_helpers.h"

#include <array>
#include <utility>

#include "platform/product_addresses.h"
#include "text/formats.h"

namespace velt {
namespace {

constexpr size_t kKeyValueRoom = 1024;  // bytes

std::string UpToNul(std::string text) {
  text.resize(std::min(text.size(), text.find('\0')));
  return text;
}

}  // namespace

std::string WindowsName(const std::string& versionText) {
  struct Row {
    const char* start;
    const char* name;
  };
  // Each later match replaces an earlier one. The rows "4.00.6" and "4.00.4" never match a text
  // of the form major.minor and stay for completeness.
  static constexpr std::array<Row, 9> kRows{{{"4.0", "Windows 95"},
                                             {"4.00.6", "Windows NT"},
                                             {"4.00.4", "Windows NT"},
                                             {"4.1", "Windows 98"},
                                             {"4.9", "Windows Me"},
                                             {"5.0", "Windows 2000"},
                                             {"5.1", "Windows XP"},
                                             {"6", "Windows Vista"},
                                             {"6.1", "Windows 7"}}};
  std::string name = "Other " + versionText;
  for (const Row& row : kRows) {
    const std::string_view start = row.start;
    if (versionText.substr(0, start.size()) == start) name = row.name;
  }
  return name;
}

PlatformHelpers::PlatformHelpers(WindowFrame& window, Ports ports)
    : window_(window), ports_(ports) {}

void PlatformHelpers::GetWindowsVersion() {
  const auto version = ports_.system.Version();
  if (version) {
    const std::string text = std::to_string(version->major) + "." + std::to_string(version->minor);
    systemDescription_ = text + "  " + (version->name.empty() ? WindowsName(text) : version->name);
  } else {
    systemDescription_ = "Err detecting windows";
  }
  systemFolder_ = UpToNul(ports_.system.SystemFolder());
  const char separator = static_cast<char>(std::filesystem::path::preferred_separator);
  if (!systemFolder_.empty() && systemFolder_.back() != separator) systemFolder_ += separator;
}

std::string PlatformHelpers::DateStamp() const {
  const LocalTime now = ports_.clock.Now();
  return AtLeastTwoDigits(now.year % 100) + "-" + AtLeastTwoDigits(now.month) + "-" +
         AtLeastTwoDigits(now.day);
}

bool PlatformHelpers::FileExists(const std::filesystem::path& path) const {
  return !path.empty() && ports_.files.IsFile(path);
}

void PlatformHelpers::KeepOnTop(int16_t flag) {
  window_.topMost = flag != 0;
}

void PlatformHelpers::SendMailToAuthor(const ProgramVersion& version) {
  ports_.launcher.OpenDocument("mailto:" + std::string(kAuthorMail) + "?subject=VELT-SA%20v" +
                               std::to_string(version.major) + std::to_string(version.minor) +
                               std::to_string(version.revision));
}

void PlatformHelpers::OpenURL(std::string& url) {
  if (url.empty()) url = kAuthorPage;
  ports_.launcher.OpenDocument(url);
}

void PlatformHelpers::CenterForm(WindowFrame& window, int32_t screenWidthTwips,
                                 int32_t screenHeightTwips) {
  window.leftTwips = (screenWidthTwips - window.widthTwips) / 2;
  window.topTwips = (screenHeightTwips - window.heightTwips) / 2;
  window.placed = true;
}

std::string PlatformHelpers::GetSpecialFolder(int32_t identifier) const {
  return UpToNul(ports_.system.SpecialFolder(identifier));
}

std::string PlatformHelpers::GetRegistryString(RegistryRoot root, const std::string& subkey,
                                               const std::string& name) const {
  return UpToNul(ports_.system.RegistryString(root, subkey, name));
}

bool PlatformHelpers::GetKeyValue(RegistryRoot root, const std::string& keyName,
                                  const std::string& valueName, std::string& value) const {
  value.clear();
  const auto found = ports_.system.RegistryData(root, keyName, valueName);
  if (!found || found->bytes.size() > kKeyValueRoom) return false;
  if (found->type == RegistryValue::kNumber) {
    uint32_t number = 0;
    for (size_t i = std::min<size_t>(found->bytes.size(), 4); i-- > 0;) {
      number = number << 8 | static_cast<uint8_t>(found->bytes[i]);
    }
    value = std::to_string(number);
  } else {
    value = UpToNul(found->bytes);
  }
  return true;
}

}  // namespace velt

#include "app/window_factor.h"

#include <optional>
#include <string>

#include "adapters/files/disk_files.h"
#include "adapters/files/ini_text.h"
#include "app/adapters.h"
#include "shell/window_scale.h"

namespace velt {
namespace {

constexpr const char* kVariable = "QT_SCALE_FACTOR";

// Only looks: the run itself opens the settings later, puts damaged ones right and tells it.
std::string StoredScale(const Options& options) {
  if (options.KeepsInMemory()) return "";
  const DiskFiles files;
  std::filesystem::path path = SettingsFile(options);
  std::optional<IniText> settings = IniText::Parse(files.Read(path).bytes);
  path += ".bak";
  if (!settings && files.IsFile(path)) settings = IniText::Parse(files.Read(path).bytes);
  if (!settings) return "";
  return settings->Get(WindowScale::kSection, WindowScale::kKey).value_or("");
}

}  // namespace

WindowFactor::WindowFactor(const Options& options)
    : before_(qgetenv(kVariable)), wasSet_(qEnvironmentVariableIsSet(kVariable)) {
  const int32_t percent = WindowScale::Parse(StoredScale(options));
  if (percent == 100) return;
  bool valid = false;
  const double desktop = before_.toDouble(&valid);
  qputenv(kVariable,
          QByteArray::number((valid && desktop > 0 ? desktop : 1) * percent / 100.0, 'g', 6));
}

WindowFactor::~WindowFactor() {
  if (wasSet_) {
    qputenv(kVariable, before_);
  } else {
    qunsetenv(kVariable);
  }
}

}  // namespace velt

#include "platform/installation.h"

#include "text/numbers.h"

namespace velt {

std::string ProgramVersion::Text() const {
  return std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(revision);
}

bool IsVersionBelow3(std::string_view versionText) {
  if (versionText.empty()) return true;
  const char first = versionText.front();
  return first < '3' || first > '9';
}

void Installation::DetectEngine(const Files& files) {
  enginePresent = files.IsFile(engineFolder / "velt.jar");
  engineVersionText = "VELT V2.5.";
  if (!enginePresent) return;
  const FileContent content = files.Read(engineFolder / "zoka.ver");
  if (content.error != 0) return;
  const std::string_view firstLine =
      std::string_view(content.bytes).substr(0, content.bytes.find('\n'));
  const std::string_view trimmed = Trimmed(firstLine);
  if (!trimmed.empty()) engineVersionText = trimmed;
}

uint32_t Installation::DetectVELTWindow(const EngineWindow& windows) const {
  return enginePresent ? windows.Find(EngineTitle()) : 0;
}

}  // namespace velt

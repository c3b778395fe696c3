#include "shell/rig_reporter.h"

namespace velt {

RigReporter::RigReporter(const Parts& parts) : parts_(parts), baseCaption_(parts.window.caption) {
  connections_ += parts_.display.statusShown.Listen([this] { Note(); });
}

void RigReporter::SetBaseCaption(const std::string& caption) {
  baseCaption_ = caption;
  ShowCaption();
}

void RigReporter::Note() {
  ShowCaption();
  if (!parts_.rig.Exists() || linked_ == parts_.rig.Linked()) return;
  const bool first = !linked_;
  linked_ = parts_.rig.Linked();
  const std::string rig = "Rig " + std::to_string(parts_.rig.Number());
  const std::string text =
      *linked_ ? rig + " is linked." : rig + ": " + parts_.rig->StatusStr() + ".";
  parts_.log.Write(*linked_ ? LogLevel::Info : LogLevel::Warning, "velt.rig", text);
  if (!first) parts_.messages.Show(text);
}

void RigReporter::ShowCaption() {
  const std::string type = parts_.rig.Exists() ? parts_.rig->RigType() : std::string();
  parts_.window.caption = type.empty() ? baseCaption_ : baseCaption_ + " - Rig " + type;
}

}  // namespace velt

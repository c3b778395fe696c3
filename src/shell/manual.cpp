#include "shell/manual.h"

#include "text/paths.h"

namespace velt {

Manual::Manual(const Parts& parts, const Ports& ports) : parts_(parts), ports_(ports) {
  connections_ += parts_.form.mnumanual.clicked.Listen([this] { mnumanual_Click(); });
}

void Manual::mnumanual_Click() {
  const auto file = parts_.installation.programFolder / kFile;
  if (!ports_.files.IsFile(file)) {
    return parts_.messages.Show("No manual found: there is no " + PathText(file));
  }
  ports_.launcher.OpenDocument(PathText(file));
}

}  // namespace velt

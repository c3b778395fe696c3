// Opens documents and addresses with the desktop's programs.
#pragma once

#include "ports/launcher.h"

namespace velt {

class QtLauncher : public Launcher {
 public:
  void OpenDocument(const std::string& target) override;
};

}  // namespace velt

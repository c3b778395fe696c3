// Opens documents and addresses with the desktop's programs.
#pragma once

#include <QObject>

#include "ports/launcher.h"

namespace velt {

class QtLauncher : public Launcher, private QObject {
 public:
  void OpenDocument(const std::string& target) override;

  int StartProgram(const std::filesystem::path& program) override;
  int StartCommand(const std::vector<std::string>& command) override;

  // What the desktop opens a document with is asked of the tools of the desktop standards. A
  // program that only looks into archives does not count: it would not run anything.
  void StartDocument(const std::filesystem::path& document, const std::vector<std::string>& command,
                     std::function<void(Start)> told) override;
};

}  // namespace velt

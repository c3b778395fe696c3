// The dialog that tells what the program runs on, for a report of a fault, and the way to the
// system's own information tool.
#pragma once

#include <filesystem>

#include "form/sysinfo_form.h"
#include "platform/on_top.h"
#include "platform/platform_helpers.h"
#include "ports/launcher.h"
#include "ports/prompts.h"
#include "ports/session_info.h"
#include "ports/system_info.h"
#include "shell/system_report.h"

namespace velt {

class SystemInfoDialog {
 public:
  struct Parts {
    SysInfoForm& form;
    const SystemReport& report;
    const PlatformHelpers& platform;
    OnTop& onTop;
  };
  struct Ports {
    const SystemInfo& system;
    SessionInfo& session;
    Launcher& launcher;
    Prompts& prompts;
  };
  SystemInfoDialog(const Parts& parts, const Ports& ports);

  // Shows what is known by now, and the rest when it is told; a box says when nothing is known. One
  // that is open is brought up to date and comes before the other windows.
  void StartSysInfo();
  void Close();

 private:
  void StartTool();
  void TellUnavailable();
  // Empty: there is none.
  std::filesystem::path InformationTool() const;

  Parts parts_;
  Ports ports_;
  OnTop::Lowered lowered_;  // while it is open
  Connections connections_;
};

}  // namespace velt

// The about box `frmAbout`: the program's version, who made it, and the way to the system's own
// information tool.
#pragma once

#include "form/about_form.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "platform/on_top.h"
#include "platform/platform_helpers.h"
#include "ports/launcher.h"
#include "ports/prompts.h"
#include "ports/system_info.h"

namespace velt {

class AboutBox {
 public:
  struct Parts {
    AboutForm& form;
    ShellControls& mainForm;
    const Installation& installation;
    PlatformHelpers& platform;
    OnTop& onTop;
  };
  struct Ports {
    const SystemInfo& system;
    Launcher& launcher;
    Prompts& prompts;
  };
  AboutBox(const Parts& parts, const Ports& ports);

  // Shows the box; one that is open comes before the other windows.
  void mnuabout_Click();
  void Close();

  // Starts the system-information tool; a box tells when there is none.
  void StartSysInfo();

 private:
  // Empty: there is none.
  std::filesystem::path InformationTool() const;

  Parts parts_;
  Ports ports_;
  OnTop::Lowered lowered_;  // while it is open
  Connections connections_;
};

}  // namespace velt

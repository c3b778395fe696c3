// The about box `frmAbout`: the program's version, who made it, and the way to the system
// information.
#pragma once

#include "form/about_form.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "platform/on_top.h"
#include "platform/platform_helpers.h"
#include "shell/system_info_dialog.h"

namespace velt {

class AboutBox {
 public:
  struct Parts {
    AboutForm& form;
    ShellControls& mainForm;
    const Installation& installation;
    PlatformHelpers& platform;
    OnTop& onTop;
    SystemInfoDialog& systemInfo;
  };
  explicit AboutBox(const Parts& parts);

  // Shows the box; one that is open comes before the other windows.
  void mnuabout_Click();
  void Close();

 private:
  Parts parts_;
  OnTop::Lowered lowered_;  // while it is open
  Connections connections_;
};

}  // namespace velt

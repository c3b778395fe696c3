// Opens the program's manual.
#pragma once

#include "dialogs/message_line.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "ports/files.h"
#include "ports/launcher.h"

namespace velt {

class Manual {
 public:
  static constexpr const char* kFile = "Manual VELT-SA.pdf";

  struct Parts {
    ShellControls& form;
    const Installation& installation;
    MessageLine& messages;
  };
  struct Ports {
    const Files& files;
    Launcher& launcher;
  };
  Manual(const Parts& parts, const Ports& ports);

  // Opens it from the program's folder; the message line says so when it is not there.
  void mnumanual_Click();

 private:
  Parts parts_;
  Ports ports_;
  Connections connections_;
};

}  // namespace velt

// Opens the manuals and the programs that stand beside this one.
#pragma once

#include <string>

#include "dialogs/message_line.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "ports/files.h"
#include "ports/launcher.h"
#include "ports/prompts.h"

namespace velt {

class HelperPrograms {
 public:
  struct Parts {
    ShellControls& form;
    const Installation& installation;
    MessageLine& messages;
  };
  struct Ports {
    const Files& files;
    Launcher& launcher;
    Prompts& prompts;
  };
  HelperPrograms(const Parts& parts, const Ports& ports);

  // Opens a manual from the current folder, the program's folder or the installed documentation,
  // whichever has it first; the message line says so when none has.
  void mnumanual_Click();
  void mnumanual1_Click();

  // Starts the profile manager of the program's folder; a box tells when it could not be.
  void mnuprofile_Click();

  // Opens the engine's own analyser; nothing without an engine.
  void mnurunSAjar_Click();

 private:
  void OpenManual(const std::string& file);

  Parts parts_;
  Ports ports_;
  Connections connections_;
};

}  // namespace velt

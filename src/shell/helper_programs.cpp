#include "shell/helper_programs.h"

#include "text/error_text.h"
#include "text/paths.h"

namespace velt {

HelperPrograms::HelperPrograms(const Parts& parts, const Ports& ports)
    : parts_(parts), ports_(ports) {
  ShellControls& form = parts_.form;
  connections_ += form.mnumanual.clicked.Listen([this] { mnumanual_Click(); });
  connections_ += form.mnumanual1.clicked.Listen([this] { mnumanual1_Click(); });
  connections_ += form.mnuprofile.clicked.Listen([this] { mnuprofile_Click(); });
  connections_ += form.mnurunSAjar.clicked.Listen([this] { mnurunSAjar_Click(); });
}

void HelperPrograms::mnumanual_Click() {
  OpenManual("Manual VELT-SA.pdf");
}

void HelperPrograms::mnumanual1_Click() {
  OpenManual("Manual VELT-J.pdf");
}

void HelperPrograms::OpenManual(const std::string& file) {
  const Installation& where = parts_.installation;
  for (const auto& folder : {where.currentFolder, where.programFolder, where.documentationFolder}) {
    if (!ports_.files.IsFile(folder / file)) continue;
    return ports_.launcher.StartDocument(folder / file, {}, [this, file](Launcher::Start how) {
      parts_.messages.Show(how == Launcher::Start::Started
                               ? "Opening " + file
                               : "There is no program that opens " + file);
    });
  }
  parts_.messages.Show(file + " was not found");
}

void HelperPrograms::mnuprofile_Click() {
  const int error = ports_.launcher.StartProgram(parts_.installation.programFolder / "VELT-PM.exe");
  if (error == 0) return;
  ports_.prompts.Tell(
      {"VELT-SA",
       "Error runninf Profile Manager (" + std::to_string(error) + ") " + ErrorText(error),
       BoxIcon::Exclamation},
      {});
}

void HelperPrograms::mnurunSAjar_Click() {
  if (!parts_.installation.enginePresent) return;
  ports_.launcher.StartDocument(parts_.installation.programFolder / "Spectrum Analyzer.jar",
                                {"java", "-jar"}, [](Launcher::Start) {});
}

}  // namespace velt

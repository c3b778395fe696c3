#include "shell/system_info_dialog.h"

#include "text/paths.h"

namespace velt {
namespace {

constexpr const char* kToolKey = "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO";
constexpr const char* kToolFolderKey = "SOFTWARE\\Microsoft\\Shared Tools Location";

}  // namespace

SystemInfoDialog::SystemInfoDialog(const Parts& parts, const Ports& ports)
    : parts_(parts), ports_(ports) {
  SysInfoForm& form = parts_.form;
  connections_ += form.Window.closeAsked.Listen([this] { Close(); });
  connections_ += form.cmdClose.clicked.Listen([this] { Close(); });
  connections_ += form.cmdTool.clicked.Listen([this] { StartTool(); });
  connections_ += form.cmdCopy.clicked.Listen([&form] { form.lblCopied.caption = "Copied"; });
  connections_ += ports_.session.learnt.Listen([this] {
    if (parts_.form.Window.visible) parts_.form.lblReport.caption = parts_.report.Text();
  });
}

void SystemInfoDialog::StartSysInfo() {
  SysInfoForm& form = parts_.form;
  ports_.session.Ask();
  const std::string text = parts_.report.Text();
  if (text.empty()) return TellUnavailable();
  form.lblReport.caption = text;
  form.lblCopied.caption = "";
  form.cmdTool.visible = !InformationTool().empty();
  if (form.Window.visible) return form.Window.BringForward();
  lowered_ = parts_.onTop.Lower();
  form.Window.visible = true;
}

void SystemInfoDialog::Close() {
  parts_.form.Window.visible = false;
  lowered_.reset();
}

void SystemInfoDialog::StartTool() {
  const std::filesystem::path tool = InformationTool();
  if (tool.empty() || ports_.launcher.StartProgram(tool) != 0) TellUnavailable();
}

void SystemInfoDialog::TellUnavailable() {
  ports_.prompts.Tell({.title = "VELT-SA",
                       .text = "System Information Is Unavailable At This Time",
                       .icon = BoxIcon::Information},
                      {});
}

std::filesystem::path SystemInfoDialog::InformationTool() const {
  std::string found;
  if (parts_.platform.GetKeyValue(RegistryRoot::LocalMachine, kToolKey, "PATH", found)) {
    return TextPath(found);
  }
  if (parts_.platform.GetKeyValue(RegistryRoot::LocalMachine, kToolFolderKey, "MSINFO", found)) {
    std::filesystem::path tool = TextPath(found + "\\MSINFO32.EXE");
    if (parts_.platform.FileExists(tool)) return tool;
  }
  return ports_.system.InformationTool();
}

}  // namespace velt

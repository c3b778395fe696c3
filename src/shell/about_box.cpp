#include "shell/about_box.h"

#include "platform/product_addresses.h"
#include "text/paths.h"

namespace velt {
namespace {

constexpr const char* kToolKey = "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO";
constexpr const char* kToolFolderKey = "SOFTWARE\\Microsoft\\Shared Tools Location";

}  // namespace

AboutBox::AboutBox(const Parts& parts, const Ports& ports) : parts_(parts), ports_(ports) {
  AboutForm& form = parts_.form;
  form.Label1.caption = kAuthorMail;
  form.Label2.caption = kAuthorPage;
  form.Label5.caption = kProgramPage;
  for (Label* link : {&form.Label1, &form.Label2, &form.Label5}) {
    link->visible = !link->caption.Get().empty();
  }
  form.Image3.visible = *kDonationPage != '\0';

  connections_ += parts_.mainForm.mnuabout.clicked.Listen([this] { mnuabout_Click(); });
  connections_ += form.Window.closeAsked.Listen([this] { Close(); });
  connections_ += form.cmdOK.clicked.Listen([this] { Close(); });
  connections_ += form.cmdSysInfo.clicked.Listen([this] { StartSysInfo(); });
  connections_ += form.Label1.clicked.Listen(
      [this] { parts_.platform.SendMailToAuthor(parts_.installation.version); });
  for (Label* link : {&form.Label2, &form.Label5}) {
    connections_ += link->clicked.Listen([this, link] {
      std::string url = link->caption;
      parts_.platform.OpenURL(url);
    });
  }
  connections_ += form.Image3.clicked.Listen([this] {
    std::string url = kDonationPage;
    parts_.platform.OpenURL(url);
  });
}

void AboutBox::mnuabout_Click() {
  if (parts_.form.Window.visible) return parts_.form.Window.BringForward();
  lowered_ = parts_.onTop.Lower();
  parts_.form.lblVersion.caption = "Version " + parts_.installation.version.Text();
  parts_.form.Window.visible = true;
}

void AboutBox::Close() {
  parts_.form.Window.visible = false;
  lowered_.reset();
}

void AboutBox::StartSysInfo() {
  const std::filesystem::path tool = InformationTool();
  if (!tool.empty() && ports_.launcher.StartProgram(tool) == 0) return;
  ports_.prompts.Tell({.title = "VELT-SA",
                       .text = "System Information Is Unavailable At This Time",
                       .icon = BoxIcon::Information},
                      {});
}

std::filesystem::path AboutBox::InformationTool() const {
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

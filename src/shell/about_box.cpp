#include "shell/about_box.h"

#include "platform/product_addresses.h"

namespace velt {

AboutBox::AboutBox(const Parts& parts) : parts_(parts) {
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
  connections_ += form.cmdSysInfo.clicked.Listen([this] { parts_.systemInfo.StartSysInfo(); });
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

}  // namespace velt

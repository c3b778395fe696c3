// `frmAbout`: the state of every control of the about box.
#pragma once

#include "form/controls.h"
#include "form/dialog_window.h"

namespace velt {

struct AboutForm : Form {
  AboutForm();

  DialogWindow Window;
  Label lblVersion;
  Label lblDescription;
  Label lblWarning;  // what a user of a transmitter has to know
  Label Label1;      // mail to the author
  Label Label2;      // the author's page; its caption is the address
  Label Label5;      // the program's page; likewise
  Image Image3;      // the donation page
  Button cmdSysInfo;
  Button cmdOK;
};

}  // namespace velt

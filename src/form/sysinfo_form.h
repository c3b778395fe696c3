// The state of every control of the dialog with what a report of a fault needs to know.
#pragma once

#include "form/controls.h"
#include "form/dialog_window.h"

namespace velt {

struct SysInfoForm : Form {
  SysInfoForm();

  DialogWindow Window;
  Label lblReport;  // lines, one fact in each
  Label lblCopied;  // empty until it was
  Button cmdTool;   // starts the desktop's own information tool; not shown where there is none
  Button cmdCopy;
  Button cmdClose;
};

}  // namespace velt

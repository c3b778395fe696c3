#include "form/sysinfo_form.h"

namespace velt {

SysInfoForm::SysInfoForm()
    : Window(*this, "System Information"),
      lblReport(*this),
      lblCopied(*this),
      cmdTool(*this, "Desktop's Tool..."),
      cmdCopy(*this, "Copy All"),
      cmdClose(*this, "Close") {}

}  // namespace velt

// The window of the system information.
#pragma once

#include "form/sysinfo_form.h"
#include "ui/form_dialog.h"

class QHBoxLayout;
class QPushButton;

namespace velt {

class SysInfoWindow : public FormDialog {
 public:
  // `form` has to outlive the window. The window is hidden until the form says otherwise.
  SysInfoWindow(SysInfoForm& form, QWidget* parent);

 private:
  QPushButton* AddButton(QHBoxLayout& row, const Button& control, const Words& words);

  SysInfoForm& form_;
};

}  // namespace velt

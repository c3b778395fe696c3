// The window of the about box.
#pragma once

#include "form/about_form.h"
#include "ui/form_dialog.h"

class QLabel;
class QGridLayout;

namespace velt {

class AboutWindow : public FormDialog {
 public:
  // `form` has to outlive the window. The window is hidden until the form says otherwise.
  AboutWindow(AboutForm& form, QWidget* parent);

 private:
  QWidget* MakeTexts();
  QLabel* MakeText(const Label& control, const Words& words);
  void AddLink(QGridLayout& grid, const QString& caption, Label& control, const Words& words);
  QWidget* MakeBottomRow();

  AboutForm& form_;
};

}  // namespace velt

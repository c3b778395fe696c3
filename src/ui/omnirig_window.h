// The window of the CAT dialog. It stands beside the main window, so that a frequency can be tuned
// while it is watched.
#pragma once

#include <QButtonGroup>

#include "form/omnirig_form.h"
#include "ui/form_dialog.h"

class QGridLayout;
class QLineEdit;
class QPushButton;

namespace velt {

class OmniRigWindow : public FormDialog {
 public:
  // `form` has to outlive the window. The window is hidden until the form says otherwise.
  OmniRigWindow(OmniRigForm& form, QWidget* parent);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QWidget* MakeServers();
  void AddServer(QGridLayout& grid, int row, OptionButton& option, TextBox& address);
  QWidget* MakeLink();
  QWidget* MakeCommand();
  QWidget* MakeReport();
  void AddFrequency(QGridLayout& grid, int row, const QString& caption, RigLabel& label);
  QWidget* MakeTargets();
  QWidget* MakeLimit();
  QWidget* MakeBottomRow();

  OmniRigForm& form_;
  QButtonGroup rigs_;
  QButtonGroup targets_;
  QLineEdit* limit_ = nullptr;
  QPushButton* apply_ = nullptr;
  Connections connections_;
};

}  // namespace velt

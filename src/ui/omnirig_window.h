// The window of the CAT dialog: shows `frmOmniRig` and hands the user's input to it. It stands
// beside the main window without blocking it, so that a frequency can be tuned while it is watched.
#pragma once

#include <QButtonGroup>
#include <QDialog>
#include <QTimer>
#include <vector>

#include "form/omnirig_form.h"
#include "ui/form_mirror.h"

class QAbstractButton;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace velt {

class OmniRigWindow : public QDialog {
 public:
  // `form` has to outlive the window. The window is hidden until the form says otherwise.
  OmniRigWindow(OmniRigForm& form, QWidget* parent);
  ~OmniRigWindow() override;

  // Escape and the window's frame; the form decides.
  void reject() override;

 protected:
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QGroupBox* MakeServers();
  QGroupBox* MakeLink();
  QGroupBox* MakeReport();
  QGroupBox* MakeTargets();
  QWidget* MakeLimit();
  QWidget* MakeBottomRow();

  void AddServer(QGridLayout& grid, int row, OptionButton& option, TextBox& address);
  void AddFrequency(QGridLayout& grid, int row, const char* caption, Label& label);
  QLabel* MakeValue(const char* caption, Label& label, const char* unknown = "");
  QLabel* MakeError(const char* name, Label& label);
  void BindButton(Button& button, QPushButton* widget, QChar accessKey);
  void BindOption(OptionButton& option, QButtonGroup& group, QAbstractButton* widget);
  void BindText(TextBox& box, QLineEdit* edit);

  void ShowWindow();
  void PlaceBelowParent();
  void ShowLink();
  void ShowErrorColour();
  void TakeLimit();

  OmniRigForm& form_;
  FormMirror mirror_;
  QButtonGroup rigs_;
  QButtonGroup targets_;
  QTimer limitPause_;
  QLineEdit* limit_ = nullptr;
  QPushButton* apply_ = nullptr;
  QPushButton* close_ = nullptr;
  QGroupBox* report_ = nullptr;
  QLabel* status_ = nullptr;
  std::vector<QLabel*> values_;
  std::vector<QLabel*> errors_;
};

}  // namespace velt

// The window of the setup dialog: groups of fields in two columns.
#pragma once

#include "form/setup_form.h"
#include "ui/form_dialog.h"

class QComboBox;
class QGridLayout;
class QLineEdit;

namespace velt {

class SetupWindow : public FormDialog {
 public:
  // `form` has to outlive the window. The window is hidden until the form says otherwise.
  SetupWindow(SetupForm& form, QWidget* parent);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  // A caption's letter behind an ampersand leads to what stands beside it.
  QLineEdit* AddNumber(QGridLayout& grid, const QString& caption, TextBox& control);
  QComboBox* AddList(QGridLayout& grid, const QString& caption, ListBox& control,
                     const Words& words);
  void AddButton(QGridLayout& grid, const QString& caption, const Button& control,
                 const Words& words);
  QWidget* MakeAnalyser();
  QWidget* MakeRig();
  QWidget* MakeWaterfall();
  QWidget* MakeAudio();
  QWidget* MakeReset();
  QWidget* MakeBottomRow();

  SetupForm& form_;
  QLineEdit* first_ = nullptr;  // has the keyboard when the window opens
};

}  // namespace velt

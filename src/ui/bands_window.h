// The window of the band preset dialog: a row for each band, in two blocks.
#pragma once

#include "form/bands_form.h"
#include "ui/form_dialog.h"

class QGridLayout;
class QHBoxLayout;
class QLineEdit;

namespace velt {

class BandsWindow : public FormDialog {
 public:
  // `form` has to outlive the window. The window is hidden until the form says otherwise.
  BandsWindow(BandsForm& form, QWidget* parent);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void AddHeadings(QGridLayout& grid, int column);
  void AddBand(QGridLayout& grid, int band);
  QWidget* MakeOutcome();
  void AddButton(QHBoxLayout& row, const Button& control, const Words& words);
  QWidget* MakeBottomRow();

  BandsForm& form_;
  QLineEdit* first_ = nullptr;  // has the keyboard when the window opens
};

}  // namespace velt

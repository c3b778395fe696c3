// The window of the colour dialog. It stands beside the main window, which shows each colour as it
// is chosen.
#pragma once

#include "form/colors_form.h"
#include "ui/form_dialog.h"

class QGridLayout;

namespace velt {

class ColorsWindow : public FormDialog {
 public:
  // `form` has to outlive the window. The window is hidden until the form says otherwise.
  ColorsWindow(ColorsForm& form, QWidget* parent);

 private:
  void AddColour(QGridLayout& grid, int index);
  void AddPalette(QGridLayout& grid);
  QWidget* MakeBottomRow();

  ColorsForm& form_;
};

}  // namespace velt

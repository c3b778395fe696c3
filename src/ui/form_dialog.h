// The window of a form of its own, which comes and goes as the form says. It stands beside its
// parent without blocking it.
#pragma once

#include <QDialog>

#include "form/dialog_window.h"
#include "ui/form_binder.h"

namespace velt {

class FormDialog : public QDialog {
 public:
  // The form has to outlive the dialog.
  FormDialog(Form& form, DialogWindow& window, QWidget* parent);

  // Escape and the window's frame; the form decides.
  void reject() override;

 protected:
  FormBinder& Binder() { return binder_; }
  // To be called when everything is bound: from then on the form shows and hides the window.
  void FollowForm();

 private:
  void ShowWindow();
  void BringForward();
  void PlaceBesideParent();
  bool HidesButtons(const Rectangle& place) const;

  DialogWindow& window_;
  FormBinder binder_;
  Connection forward_;
};

}  // namespace velt

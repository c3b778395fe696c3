// The window that asks to wait, as its form says. It takes no keys: the engine that is waited for
// gets the keyboard.
#pragma once

#include <QDialog>

#include "form/message_form.h"
#include "ui/form_binder.h"

class QLabel;

namespace velt {

class MessageView : public QDialog {
 public:
  // The form has to outlive the window.
  MessageView(MessageForm& form, QWidget* parent);

  // Escape and the window's frame; the form decides.
  void reject() override;

 private:
  void ShowWindow();

  MessageForm& form_;
  FormBinder binder_;
};

}  // namespace velt

// Binds a text box to a line edit, and leaves alone what is being typed.
#pragma once

#include <QLineEdit>
#include <QTimer>

#include "ui/form_binder.h"

namespace velt {

class TextBinding : public QObject {
 public:
  // Both have to outlive the binding, or to be deleted without another event.
  TextBinding(TextBox& box, QLineEdit& edit, Typing typing, QObject* parent);

  void Show();
  void DropTyping();

 private:
  void Take();

  TextBox& box_;
  QLineEdit& edit_;
  QTimer pause_;  // runs while something is typed that the form has not got
};

}  // namespace velt

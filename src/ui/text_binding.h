// Binds a text box to a line edit: what is being typed is left alone until the program has another
// text to show.
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
  QString shown_;  // what the form said last, whatever was typed since
  QTimer pause_;
};

}  // namespace velt

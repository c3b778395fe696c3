// Hands the keys that act on the whole main window to its form, wherever the focus is in it. Text
// fields, lists and sliders keep the cursor keys.
#pragma once

#include <QObject>

#include "form/main_form.h"

class QWidget;

namespace velt {

class WindowKeys : public QObject {
 public:
  // `window` has to outlive it, and so has its form.
  WindowKeys(const WindowFrame& form, QWidget* window);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  const WindowFrame& form_;
  QWidget* window_;
};

}  // namespace velt

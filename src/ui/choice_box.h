// A list whose choices act at once: the wheel and the arrow keys, which would run through all
// choices between here and there, do not choose while the list is closed.
#pragma once

#include <QComboBox>

namespace velt {

class ChoiceBox : public QComboBox {
 public:
  using QComboBox::QComboBox;

 protected:
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace velt

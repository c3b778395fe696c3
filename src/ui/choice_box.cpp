#include "ui/choice_box.h"

#include <QKeyEvent>
#include <QWheelEvent>

namespace velt {

void ChoiceBox::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

void ChoiceBox::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
      showPopup();
      break;
    default:
      QComboBox::keyPressEvent(event);
  }
}

}  // namespace velt

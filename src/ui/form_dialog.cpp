#include "ui/form_dialog.h"

#include <QScreen>

#include "ui/qt_text.h"

namespace velt {

FormDialog::FormDialog(Form& form, DialogWindow& window, QWidget* parent)
    : QDialog(parent), window_(window), binder_(form, FormBinder::Places::OfLayout) {}

void FormDialog::FollowForm() {
  binder_.Watch(window_, [this] { ShowWindow(); });
}

void FormDialog::ShowWindow() {
  const QString title = ToQt(window_.caption.Get());
  if (windowTitle() != title) setWindowTitle(title);
  if (isHidden() != window_.visible) return;
  if (!window_.visible) {
    // Hiding takes the focus from a field, which would else be the end of its typing.
    binder_.DropTyping();
    hide();
    return;
  }
  if (!testAttribute(Qt::WA_Moved)) PlaceBelowParent();
  show();
  raise();
  activateWindow();
}

// In the middle of the main window, its usual place, it would hide what it is watched with.
void FormDialog::PlaceBelowParent() {
  if (parentWidget() == nullptr) return;
  adjustSize();
  const QRect above = parentWidget()->frameGeometry();
  const int titleBar = parentWidget()->geometry().top() - above.top();
  const QRect wanted(above.bottomLeft() + QPoint(0, 1), size() + QSize(0, titleBar));
  if (parentWidget()->screen()->availableGeometry().contains(wanted)) move(wanted.topLeft());
}

void FormDialog::reject() {
  window_.closeAsked.Raise();
  // At once: a close event that leaves its window open counts as a veto to ending the program.
  binder_.Sync();
}

}  // namespace velt

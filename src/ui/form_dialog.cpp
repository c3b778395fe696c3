#include "ui/form_dialog.h"

#include <QScreen>
#include <algorithm>

#include "platform/placing.h"
#include "ports/prompts.h"
#include "ui/qt_rectangle.h"
#include "ui/qt_text.h"

namespace velt {

FormDialog::FormDialog(Form& form, DialogWindow& window, QWidget* parent)
    : QDialog(parent), window_(window), binder_(form, FormBinder::Places::OfLayout) {}

void FormDialog::FollowForm() {
  binder_.Watch(window_, [this] { ShowWindow(); });
  forward_ = window_.forwardWanted.Listen([this] { BringForward(); });
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
  if (!testAttribute(Qt::WA_Moved)) PlaceBesideParent();
  show();
  BringForward();
}

void FormDialog::BringForward() {
  raise();
  activateWindow();
}

bool FormDialog::HidesButtons(const Rectangle& place) const {
  const auto all = parentWidget()->findChildren<QWidget*>();
  return std::any_of(all.begin(), all.end(), [&place](const QWidget* widget) {
    return widget->property(reachableBelowBoxes).toBool() && widget->isVisible() &&
           place.Overlaps(FromQt({widget->mapToGlobal(QPoint()), widget->size()}));
  });
}

// In the middle of the main window, its usual place, it would hide what it is watched with.
void FormDialog::PlaceBesideParent() {
  if (parentWidget() == nullptr) return;
  adjustSize();
  const Rectangle main = FromQt(parentWidget()->frameGeometry());
  const int titleBar = parentWidget()->geometry().top() - main.top;
  const Rectangle place = CheapestPlace(
      PlacesBeside(main, width(), height() + titleBar),
      FromQt(parentWidget()->screen()->availableGeometry()), [this, &main](const Rectangle& at) {
        // Where there is no room beside it, the transmitter's buttons stay within reach if they
        // can.
        return CommonArea(at, main) + (HidesButtons(at) ? main.width * main.height : 0);
      });
  move(place.left, place.top);
}

void FormDialog::reject() {
  window_.closeAsked.Raise();
  // At once: a close event that leaves its window open counts as a veto to ending the program.
  binder_.Sync();
}

}  // namespace velt

#include "ui/form_mirror.h"

#include <QMetaObject>

#include "ui/qt_text.h"

namespace velt {

FormMirror::FormMirror(Form& form) : form_(form) {
  // Bind shows the present state. A change left on the list would keep the form from ever waking.
  form_.TakeChanged();
  connections_ += form_.wake.Listen([this] {
    QMetaObject::invokeMethod(
        this, [this] { Sync(); }, Qt::QueuedConnection);
  });
}

void FormMirror::Bind(const Control& control, QWidget* widget, std::function<void()> sync,
                      bool usesPlace) {
  Watch(control, [&control, widget, sync = std::move(sync), usesPlace,
                  shownToolTip = std::string()]() mutable {
    const Rectangle& place = control.place.Get();
    if (usesPlace) {
      const QRect wanted(place.left, place.top, place.width, place.height);
      if (widget->geometry() != wanted) widget->setGeometry(wanted);
    }
    const bool shown = control.visible && !(usesPlace && (place.width <= 0 || place.height <= 0));
    if (widget->isHidden() == shown) widget->setVisible(shown);
    if (widget->isEnabled() != control.enabled) widget->setEnabled(control.enabled);
    // Widgets keep the tool tip that they were made with until the control has one of its own.
    if (control.toolTip.Get() != shownToolTip) {
      shownToolTip = control.toolTip;
      widget->setToolTip(ToQt(shownToolTip));
    }
    if (sync) sync();
  });
}

void FormMirror::Watch(const Control& control, std::function<void()> sync) {
  sync();
  syncs_[&control].push_back(std::move(sync));
}

void FormMirror::Sync() {
  for (const Control* control : form_.TakeChanged()) {
    const auto found = syncs_.find(control);
    if (found == syncs_.end()) continue;
    for (const auto& sync : found->second) sync();
  }
}

}  // namespace velt

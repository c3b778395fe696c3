#include "adapters/qt/qt_colour_chooser.h"

#include <QApplication>
#include <QPalette>

#include "adapters/qt/place_beside.h"

namespace velt {

QtColourChooser::~QtColourChooser() {
  Drop();
}

void QtColourChooser::Pick(const std::string& title, uint32_t initial,
                           std::function<void(std::optional<uint32_t>)> chosen) {
  Drop();
  QWidget* active = QApplication::activeWindow();
  open_ = new QColorDialog(active != nullptr ? active : owner_.data());
  QColorDialog* dialog = open_;
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(QString::fromStdString(title));
  dialog->setCurrentColor(initial == 0 ? QGuiApplication::palette().color(QPalette::Button)
                                       : QColor::fromRgb(initial));
  QObject::connect(dialog, &QColorDialog::currentColorChanged, dialog,
                   [this](const QColor& colour) { pointedAt.Raise(colour.rgb()); });
  QObject::connect(dialog, &QDialog::finished, dialog, [this, dialog, chosen](int result) {
    open_.clear();
    if (result == QDialog::Accepted) {
      chosen(dialog->selectedColor().rgb());
    } else {
      chosen(std::nullopt);
    }
  });
  PlaceBeside(*dialog, owner_);
  dialog->show();
}

void QtColourChooser::Drop() {
  if (!open_) return;
  // Not deleted at once: it may be the sender of what is running now.
  open_->disconnect();
  open_->hide();
  open_->deleteLater();
  open_.clear();
}

}  // namespace velt

#include "adapters/qt/qt_prompts.h"

#include <QAction>
#include <QCursor>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QTimer>

namespace velt {
namespace {

QMessageBox::Icon IconOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Information:
      return QMessageBox::Information;
    case BoxIcon::Question:
      return QMessageBox::Question;
    case BoxIcon::Exclamation:
      return QMessageBox::Warning;
    case BoxIcon::Critical:
      return QMessageBox::Critical;
  }
  return QMessageBox::NoIcon;
}

QMessageBox* MakeBox(const MessagePrompt& box, QMessageBox::StandardButtons buttons,
                     QWidget* owner) {
  auto* made = new QMessageBox(IconOf(box.icon), QString::fromStdString(box.title),
                               QString::fromStdString(box.text), buttons, owner);
  made->setTextFormat(Qt::PlainText);
  return made;
}

}  // namespace

QtPrompts::~QtPrompts() {
  DropAll();
}

void QtPrompts::Tell(const MessagePrompt& box, std::function<void()> closed) {
  QMessageBox* made = MakeBox(box, QMessageBox::Ok, owner_);
  QObject::connect(made, &QDialog::finished, made, [closed = std::move(closed)](int) {
    if (closed) closed();
  });
  Show(made);
}

void QtPrompts::Ask(const MessagePrompt& box, std::function<void(bool)> answered) {
  QMessageBox* made = MakeBox(box, QMessageBox::Yes | QMessageBox::No, owner_);
  QObject::connect(made, &QDialog::finished, made, [answered = std::move(answered)](int result) {
    if (answered) answered(result == QMessageBox::Yes);
  });
  Show(made);
}

void QtPrompts::Input(const InputPrompt& box,
                      std::function<void(std::optional<std::string>)> answered) {
  auto* dialog = new QInputDialog(owner_);
  dialog->setWindowTitle(QString::fromStdString(box.title));
  dialog->setLabelText(QString::fromStdString(box.prompt));
  dialog->setTextValue(QString::fromStdString(box.initial));
  QObject::connect(dialog, &QDialog::finished, dialog,
                   [dialog, answered = std::move(answered)](int result) {
                     if (!answered) return;
                     if (result == QDialog::Accepted) {
                       answered(dialog->textValue().toStdString());
                     } else {
                       answered(std::nullopt);
                     }
                   });
  Show(dialog);
}

void QtPrompts::Show(QDialog* dialog) {
  open_.removeAll(QPointer<QWidget>());
  open_.append(dialog);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowModality(Qt::WindowModal);
  dialog->open();
}

bool QtPrompts::Popup(const std::vector<PopupItem>& items,
                      std::function<void(std::function<void()>)> closed) {
  if (menuOpen_ || items.empty()) return false;
  menuOpen_ = true;
  auto* menu = new QMenu(owner_);
  menu_ = menu;
  auto chosen = std::make_shared<std::function<void()>>();
  Fill(*menu, items, chosen);
  // The chosen line is told after the menu has hidden itself, so the answer waits one turn.
  QObject::connect(menu, &QMenu::aboutToHide, menu, [this, menu, chosen, closed] {
    QTimer::singleShot(0, menu, [this, menu, chosen, closed] {
      if (!menuOpen_) return;  // dropped meanwhile
      menuOpen_ = false;
      menu->deleteLater();
      closed(*chosen);
    });
  });
  menu->popup(QCursor::pos());
  return true;
}

void QtPrompts::Fill(QMenu& menu, const std::vector<PopupItem>& items, const Chosen& chosen) {
  for (const PopupItem& item : items) {
    if (item.caption == "-") {
      menu.addSeparator();
      continue;
    }
    const QString caption = QString::fromStdString(item.caption);
    if (!item.items.empty()) {
      QMenu* sub = menu.addMenu(caption);
      sub->setEnabled(item.enabled);
      Fill(*sub, item.items, chosen);
      continue;
    }
    const QString shortcut = QString::fromStdString(item.shortcut);
    QAction* action = menu.addAction(shortcut.isEmpty() ? caption : caption + "\t" + shortcut);
    action->setCheckable(item.checked);
    action->setChecked(item.checked);
    action->setEnabled(item.enabled);
    QObject::connect(action, &QAction::triggered, action,
                     [chosen, choose = item.choose] { *chosen = choose; });
  }
}

void QtPrompts::DropAll() {
  const auto open = open_;
  open_.clear();
  // Not deleted at once: one of them may be the sender of what is running now.
  for (const auto& window : open) {
    if (!window) continue;
    window->disconnect();
    window->hide();
    window->deleteLater();
  }
  if (menu_) {
    menu_->disconnect();
    menu_->hide();
    menu_->deleteLater();
  }
  menuOpen_ = false;
}

}  // namespace velt

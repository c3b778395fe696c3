#include "adapters/qt/qt_prompts.h"

#include <QAction>
#include <QCursor>
#include <QEvent>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <chrono>
#include <utility>

namespace velt {
namespace {

constexpr std::chrono::milliseconds kPlacingLimit{500};

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

QMessageBox* MakeBox(const MessagePrompt& box, QWidget* owner) {
  auto* made = new QMessageBox(owner);
  made->setIcon(IconOf(box.icon));
  made->setWindowTitle(QString::fromStdString(box.title));
  made->setText(QString::fromStdString(box.text));
  made->setTextFormat(Qt::PlainText);
  return made;
}

}  // namespace

QtPrompts::~QtPrompts() {
  DropAll();
}

void QtPrompts::SetOwner(QWidget* owner) {
  if (owner_) owner_->removeEventFilter(this);
  owner_ = owner;
  ownerPlaced_ = false;
  if (owner_) owner_->installEventFilter(this);
  ShowNextSoon();
}

void QtPrompts::Tell(const MessagePrompt& box, std::function<void()> closed) {
  Queue([this, box, closed = std::move(closed)] {
    QMessageBox* made = MakeBox(box, owner_);
    made->setStandardButtons(QMessageBox::Ok);
    QObject::connect(made, &QDialog::finished, made, [closed](int) {
      if (closed) closed();
    });
    return made;
  });
}

void QtPrompts::Ask(const MessagePrompt& box, std::function<void(bool)> answered) {
  Queue([this, box, answered = std::move(answered)] {
    QMessageBox* made = MakeBox(box, owner_);
    made->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    made->setEscapeButton(box.dismissedMeansYes ? QMessageBox::Yes : QMessageBox::No);
    if (!box.yes.empty()) made->button(QMessageBox::Yes)->setText(QString::fromStdString(box.yes));
    if (!box.no.empty()) made->button(QMessageBox::No)->setText(QString::fromStdString(box.no));
    QObject::connect(made, &QDialog::finished, made, [answered](int result) {
      if (answered) answered(result == QMessageBox::Yes);
    });
    return made;
  });
}

void QtPrompts::Input(const InputPrompt& box,
                      std::function<void(std::optional<std::string>)> answered) {
  Queue([this, box, answered = std::move(answered)] {
    auto* dialog = new QInputDialog(owner_);
    dialog->setWindowTitle(QString::fromStdString(box.title));
    dialog->setLabelText(QString::fromStdString(box.prompt));
    dialog->setTextValue(QString::fromStdString(box.initial));
    QObject::connect(dialog, &QDialog::finished, dialog, [dialog, answered](int result) {
      if (!answered) return;
      if (result == QDialog::Accepted) {
        answered(dialog->textValue().toStdString());
      } else {
        answered(std::nullopt);
      }
    });
    return dialog;
  });
}

bool QtPrompts::eventFilter(QObject* watched, QEvent* event) {
  if (watched == owner_ && event->type() == QEvent::Show) {
    // A box over a window that the desktop has not placed yet would stand in the screen's corner.
    // Not every desktop gives a new window the focus.
    QTimer::singleShot(kPlacingLimit, this, [this] { OwnerIsPlaced(); });
  } else if (watched == owner_ && event->type() == QEvent::WindowActivate) {
    OwnerIsPlaced();
  }
  return QObject::eventFilter(watched, event);
}

void QtPrompts::Queue(std::function<QDialog*()> make) {
  waiting_.push_back(std::move(make));
  ShowNext();
}

void QtPrompts::OwnerIsPlaced() {
  if (std::exchange(ownerPlaced_, true)) return;
  ShowNextSoon();
}

void QtPrompts::ShowNextSoon() {
  QTimer::singleShot(0, this, [this] { ShowNext(); });
}

void QtPrompts::ShowNext() {
  if (shown_ || waiting_.empty() || (owner_ && !(owner_->isVisible() && ownerPlaced_))) return;
  const auto make = std::move(waiting_.front());
  waiting_.pop_front();
  shown_ = make();
  shown_->setAttribute(Qt::WA_DeleteOnClose);
  shown_->setWindowModality(Qt::WindowModal);
  QObject::connect(shown_, &QDialog::finished, this, [this] {
    shown_.clear();
    ShowNextSoon();
  });
  shown_->open();
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
  waiting_.clear();
  // Not deleted at once: it may be the sender of what is running now.
  if (shown_) {
    shown_->disconnect();
    shown_->hide();
    shown_->deleteLater();
    shown_.clear();
  }
  if (menu_) {
    menu_->disconnect();
    menu_->hide();
    menu_->deleteLater();
  }
  menuOpen_ = false;
}

}  // namespace velt

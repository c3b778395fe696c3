#include "adapters/qt/qt_prompts.h"

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QGridLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>
#include <chrono>
#include <utility>

#include "adapters/qt/place_beside.h"

namespace velt {
namespace {

constexpr std::chrono::milliseconds kPlacingLimit{500};
constexpr int kTitleBarButtons = 140;

// Wide enough for its title, which may hold the number of an error.
int TitleWidth(const QDialog& dialog) {
  return dialog.fontMetrics().horizontalAdvance(dialog.windowTitle()) + kTitleBarButtons;
}

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
  made->ensurePolished();
  // A message box has only the size that its grid has.
  if (auto* grid = qobject_cast<QGridLayout*>(made->layout())) {
    const QMargins margins = grid->contentsMargins();
    grid->addItem(new QSpacerItem(TitleWidth(*made) - margins.left() - margins.right(), 0),
                  grid->rowCount(), 0, 1, grid->columnCount());
  }
  return made;
}

// An "&" before a blank marks no letter: it is shown.
QString EntryText(const std::string& caption) {
  QString text = QString::fromStdString(caption);
  for (qsizetype at = 0; (at = text.indexOf('&', at)) >= 0; at += 2) {
    if (text.mid(at + 1, 1) == " ") text.insert(at, '&');
  }
  return text;
}

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
      return true;
    default:
      return false;
  }
}

// A text below the field, which makes the box wide enough for its title, too.
void AddBelowField(QInputDialog& dialog, const QString& text) {
  dialog.ensurePolished();
  static_cast<void>(dialog.sizeHint());  // makes the layout
  auto* column = qobject_cast<QVBoxLayout*>(dialog.layout());
  if (column == nullptr) return;
  auto* label = new QLabel(text, &dialog);
  label->setTextFormat(Qt::PlainText);
  label->setForegroundRole(QPalette::PlaceholderText);
  label->setMinimumWidth(TitleWidth(dialog));
  column->insertWidget(2, label);
}

// Made active in any other way, a line with a submenu would open that at once.
void ActivateFirstLine(QMenu& menu) {
  QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
  QApplication::sendEvent(&menu, &down);
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
    QMessageBox* made = MakeBox(box, Parent());
    made->setStandardButtons(QMessageBox::Ok);
    QObject::connect(made, &QDialog::finished, made, [closed](int) {
      if (closed) closed();
    });
    return made;
  });
}

void QtPrompts::Ask(const MessagePrompt& box, std::function<void(bool)> answered) {
  Queue([this, box, answered = std::move(answered)] {
    QMessageBox* made = MakeBox(box, Parent());
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
    auto* dialog = new QInputDialog(Parent());
    dialog->setWindowTitle(QString::fromStdString(box.title));
    dialog->setLabelText(QString::fromStdString(box.prompt));
    dialog->setTextValue(QString::fromStdString(box.initial));
    AddBelowField(*dialog, QString::fromStdString(box.example));
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
  // The window itself sees every input to its widgets first.
  if (IsBlocked(watched) && IsInput(event->type())) {
    const bool isPress = event->type() == QEvent::MouseButtonPress;
    if (isPress || event->type() == QEvent::KeyPress) {
      shown_->raise();
      shown_->activateWindow();
    }
    if (isPress) pressReaches_ = ReachesThrough(*static_cast<QMouseEvent*>(event));
    return event->type() == QEvent::KeyPress || !pressReaches_;
  }
  const bool isInput = owner_ && watched == owner_->windowHandle();
  if (isInput && event->type() == QEvent::MouseButtonPress) usesMouse_ = true;
  if (isInput && event->type() == QEvent::KeyPress) usesMouse_ = false;
  if (watched == owner_ && event->type() == QEvent::Show) {
    if (owner_->windowHandle() != nullptr) owner_->windowHandle()->installEventFilter(this);
    // A box over a window that the desktop has not placed yet would stand in the screen's corner.
    // Not every desktop gives a new window the focus.
    QTimer::singleShot(kPlacingLimit, this, [this] { OwnerIsPlaced(); });
  } else if (watched == owner_ && event->type() == QEvent::WindowActivate) {
    OwnerIsPlaced();
  }
  return QObject::eventFilter(watched, event);
}

bool QtPrompts::IsBlocked(const QObject* watched) const {
  if (!shown_) return false;
  const QWidget* below = shown_->parentWidget();
  return (owner_ && watched == owner_->windowHandle()) ||
         (below != nullptr && watched == below->windowHandle());
}

// The transmitter can be released whatever is asked.
bool QtPrompts::ReachesThrough(const QMouseEvent& press) const {
  const QWidget* at = QApplication::widgetAt(press.globalPosition().toPoint());
  return at != nullptr && at->window() == owner_ && at->property(reachableBelowBoxes).toBool();
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
  shown_->setWindowModality(Qt::NonModal);
  QWidget* const below = shown_->parentWidget();
  below_ = below;
  if (below != nullptr && below->windowHandle() != nullptr) {
    below->windowHandle()->installEventFilter(this);
  }
  QObject::connect(shown_, &QDialog::finished, this, [this] {
    shown_.clear();
    ShowNextSoon();
  });
  pressReaches_ = false;
  PlaceBeside(*shown_, owner_, below);
  shown_->show();
}

QWidget* QtPrompts::Parent() const {
  QWidget* active = QApplication::activeWindow();
  // Of two boxes in a row the second one comes before the desktop has moved the focus back.
  if (active == nullptr && below_) active = below_;
  const bool isDialog = active != nullptr && owner_ && active->parentWidget() == owner_;
  return isDialog && active->isVisible() ? active : owner_.data();
}

bool QtPrompts::Popup(const PopupPlace& opener, const std::vector<PopupItem>& items,
                      std::function<void(std::function<void()>)> closed) {
  if (menuOpen_ || items.empty()) return false;
  menuOpen_ = true;
  auto* menu = new QMenu(owner_);
  menu_ = menu;
  const QRect place(opener.left, opener.top, opener.width, opener.height);
  // What is not shown now opened nothing at its place.
  const bool hasPlace = owner_ && !place.isEmpty();
  const bool byKeyboard = hasPlace && !usesMouse_;
  const QPointer<QWidget> focused = byKeyboard ? QApplication::focusWidget() : nullptr;
  auto chosen = std::make_shared<std::function<void()>>();
  Fill(*menu, items, chosen);
  // The chosen line is told after the menu has hidden itself, so the answer waits one turn.
  QObject::connect(menu, &QMenu::aboutToHide, menu, [this, menu, chosen, closed, focused] {
    QTimer::singleShot(0, menu, [this, menu, chosen, closed, focused] {
      if (!menuOpen_) return;  // dropped meanwhile
      menuOpen_ = false;
      menu->deleteLater();
      closed(*chosen);
      if (focused) focused->setFocus(Qt::PopupFocusReason);
    });
  });
  menu->popup(hasPlace ? owner_->mapToGlobal(place.bottomLeft() + QPoint(0, 1)) : QCursor::pos());
  if (byKeyboard) ActivateFirstLine(*menu);
  return true;
}

void QtPrompts::Fill(QMenu& menu, const std::vector<PopupItem>& items, const Chosen& chosen) {
  for (const PopupItem& item : items) {
    if (item.caption == "-") {
      menu.addSeparator();
      continue;
    }
    const QString caption = EntryText(item.caption);
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

#include "ui/window_keys.h"

#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWidget>
#include <map>

namespace velt {
namespace {

const std::map<int, KeyCode> kCursorKeys{
    {Qt::Key_Left, kKeyLeft}, {Qt::Key_Right, kKeyRight},   {Qt::Key_Up, kKeyUp},
    {Qt::Key_Down, kKeyDown}, {Qt::Key_PageUp, kKeyPageUp}, {Qt::Key_PageDown, kKeyPageDown},
    {Qt::Key_Home, kKeyHome}, {Qt::Key_End, kKeyEnd},
};
const std::map<int, KeyCode> kFunctionKeys{
    {Qt::Key_F2, kKeyF2},   {Qt::Key_F5, kKeyF5},   {Qt::Key_F9, kKeyF9},
    {Qt::Key_F11, kKeyF11}, {Qt::Key_F12, kKeyF12},
};

bool NeedsCursorKeys(const QWidget* widget) {
  return qobject_cast<const QLineEdit*>(widget) != nullptr ||
         qobject_cast<const QComboBox*>(widget) != nullptr ||
         qobject_cast<const QAbstractSlider*>(widget) != nullptr ||
         qobject_cast<const QAbstractItemView*>(widget) != nullptr;
}

}  // namespace

WindowKeys::WindowKeys(const WindowFrame& form, QWidget* window)
    : QObject(window), form_(form), window_(window) {
  // Before the widgets: a button would take the cursor keys to go to its neighbour.
  qApp->installEventFilter(this);
}

bool WindowKeys::eventFilter(QObject* watched, QEvent* event) {
  auto* widget = qobject_cast<QWidget*>(watched);
  if (event->type() != QEvent::KeyPress || widget == nullptr || widget->window() != window_) {
    return QObject::eventFilter(watched, event);
  }
  const auto* press = static_cast<QKeyEvent*>(event);
  if (const auto cursor = kCursorKeys.find(press->key()); cursor != kCursorKeys.end()) {
    if (NeedsCursorKeys(widget) || NeedsCursorKeys(QApplication::focusWidget())) return false;
    form_.keyDown.Raise(cursor->second);
    return true;
  }
  // Not every keyboard has a menu key, and here Qt knows no other one.
  if (press->key() == Qt::Key_F10 && press->modifiers() == Qt::ShiftModifier) {
    const QPoint at = widget->rect().center();
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, at, widget->mapToGlobal(at));
    QCoreApplication::sendEvent(widget, &menu);
    return true;
  }
  const auto function = kFunctionKeys.find(press->key());
  if (function == kFunctionKeys.end()) return false;
  // A function key that is held acts once.
  if (!press->isAutoRepeat()) form_.keyDown.Raise(function->second);
  return true;
}

}  // namespace velt

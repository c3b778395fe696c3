#include "ui/paste_filter.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <utility>

#include "ui/qt_text.h"

namespace velt {

PasteFilter::PasteFilter(PastedText& text) : text_(text) {
  qApp->installEventFilter(this);
}

bool PasteFilter::eventFilter(QObject* watched, QEvent* event) {
  auto* edit = qobject_cast<QLineEdit*>(watched);
  if (edit == nullptr) return QObject::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::KeyPress:
      return TakeKey(*edit, *static_cast<QKeyEvent*>(event));
    case QEvent::MouseButtonRelease:
      return TakeMouse(*edit, *static_cast<QMouseEvent*>(event));
    case QEvent::ContextMenu:
      if (edit->contextMenuPolicy() != Qt::DefaultContextMenu) return false;
      ShowMenu(*edit, *static_cast<QContextMenuEvent*>(event));
      return true;
    default:
      return QObject::eventFilter(watched, event);
  }
}

bool PasteFilter::TakeKey(QLineEdit& edit, const QKeyEvent& key) {
  if (waiting_ == &edit) {
    held_.emplace_back(key.clone());
    return true;
  }
  if (edit.isReadOnly() || !key.matches(QKeySequence::Paste)) return false;
  Paste(edit, PastedText::From::Clipboard);
  return true;
}

bool PasteFilter::TakeMouse(QLineEdit& edit, const QMouseEvent& mouse) {
  if (edit.isReadOnly() || mouse.button() != Qt::MiddleButton) return false;
  Paste(edit, PastedText::From::Marked);
  return true;
}

// Whether there is anything to paste is not known without asking.
void PasteFilter::ShowMenu(QLineEdit& edit, const QContextMenuEvent& asked) {
  auto* menu = new QMenu(&edit);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const bool writable = !edit.isReadOnly();
  const bool marked = edit.hasSelectedText();
  const bool readable = edit.echoMode() == QLineEdit::Normal;
  const auto add = [&](const char* text, QKeySequence::StandardKey key, bool enabled, auto act) {
    QAction* action = menu->addAction(text, &edit, act);
    action->setShortcut(key);
    action->setEnabled(enabled);
  };
  add("&Undo", QKeySequence::Undo, writable && edit.isUndoAvailable(), &QLineEdit::undo);
  add("&Redo", QKeySequence::Redo, writable && edit.isRedoAvailable(), &QLineEdit::redo);
  menu->addSeparator();
  add("Cu&t", QKeySequence::Cut, writable && marked && readable, &QLineEdit::cut);
  add("&Copy", QKeySequence::Copy, marked && readable, &QLineEdit::copy);
  add("&Paste", QKeySequence::Paste, writable,
      [this, &edit] { Paste(edit, PastedText::From::Clipboard); });
  add("&Delete", QKeySequence::Delete, writable && marked, [&edit] { edit.insert({}); });
  menu->addSeparator();
  add("&Select All", QKeySequence::SelectAll, !edit.text().isEmpty(), &QLineEdit::selectAll);
  menu->popup(asked.globalPos());
}

void PasteFilter::Paste(QLineEdit& edit, PastedText::From from) {
  if (waiting_) Pasted({});
  waiting_ = &edit;
  text_.Ask(from, [this](const std::string& text) { Pasted(text); });
}

void PasteFilter::Pasted(const std::string& text) {
  const QPointer<QLineEdit> edit = std::exchange(waiting_, nullptr);
  auto held = std::exchange(held_, {});
  if (!edit) return;
  if (!text.empty()) edit->insert(ToQt(text));
  for (auto& key : held) QCoreApplication::postEvent(edit, key.release());
}

}  // namespace velt

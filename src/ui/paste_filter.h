// Pasting into every line edit of the program without waiting for the program that the text comes
// from: Qt's own way would stand still for seconds when that one hangs.
#pragma once

#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <memory>
#include <vector>

#include "ports/pasted_text.h"

class QContextMenuEvent;

namespace velt {

class PasteFilter : public QObject {
 public:
  // For the whole application, as long as this lives.
  explicit PasteFilter(PastedText& text);

 protected:
  // Takes the keys that paste, the middle mouse button and the context menu. What is typed into the
  // same line edit before the text is there comes behind it.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool TakeKey(QLineEdit& edit, const QKeyEvent& key);
  bool TakeMouse(QLineEdit& edit, const QMouseEvent& mouse);
  void ShowMenu(QLineEdit& edit, const QContextMenuEvent& asked);
  void Paste(QLineEdit& edit, PastedText::From from);
  void Pasted(const std::string& text);

  PastedText& text_;
  QPointer<QLineEdit> waiting_;
  std::vector<std::unique_ptr<QKeyEvent>> held_;
};

}  // namespace velt

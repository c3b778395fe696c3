// A text that can be clicked, focused and read out; it keeps its place whatever it says.
#pragma once

#include <QAbstractButton>
#include <QAccessible>

namespace velt {

class ClickLabel : public QAbstractButton {
 public:
  explicit ClickLabel(QWidget* parent);

  void SetText(const QString& plain);
  void SetAlignment(Qt::Alignment alignment);
  // Greyed, because the text is not current any more.
  void SetStale(bool stale);
  // A colour of its own behind the text.
  void SetFill(const QColor& fill, const QColor& text);
  // Without a frame on hover: nothing happens on a click.
  void SetPassive(bool passive);
  // Where a text that has no room loses what it has too much; at first at its right.
  void SetElision(Qt::TextElideMode elision) { elision_ = elision; }
  // What it is for screen readers where a click opens no menu.
  void SetSpokenRole(QAccessible::Role role) { role_ = role; }
  QAccessible::Role SpokenRole() const { return passive_ ? QAccessible::StaticText : role_; }
  // Whether a click does something.
  bool Acts() const { return isEnabled() && !passive_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void ShowCursor();

  Qt::Alignment alignment_ = Qt::AlignCenter;
  Qt::TextElideMode elision_ = Qt::ElideRight;
  bool stale_ = false;
  bool passive_ = false;
  QString text_;
  QAccessible::Role role_ = QAccessible::ButtonMenu;
  QColor fill_;
  QColor textColour_;
};

}  // namespace velt

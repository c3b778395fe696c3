#include "ui/text_binding.h"

#include <QSignalBlocker>

#include "ui/qt_text.h"

namespace velt {
namespace {

constexpr int kPauseMs = 1000;

}  // namespace

TextBinding::TextBinding(TextBox& box, QLineEdit& edit, Typing typing, QObject* parent)
    : QObject(parent), box_(box), edit_(edit) {
  pause_.setSingleShot(true);
  pause_.setInterval(kPauseMs);
  connect(&pause_, &QTimer::timeout, this, [this] { Take(); });
  if (typing == Typing::EachCharacter) {
    connect(&edit_, &QLineEdit::textEdited, this, [this] { Take(); });
  } else {
    connect(&edit_, &QLineEdit::textEdited, this, [this] { pause_.start(); });
    connect(&edit_, &QLineEdit::editingFinished, this, [this] { Take(); });
  }
}

void TextBinding::Show() {
  const QString text = ToQt(box_.text.Get());
  if (text == shown_ || pause_.isActive()) return;
  shown_ = text;
  DropTyping();
}

void TextBinding::DropTyping() {
  pause_.stop();
  const QString text = ToQt(box_.text.Get());
  if (edit_.text() == text) return;
  const QSignalBlocker quiet(edit_);
  edit_.setText(text);
}

void TextBinding::Take() {
  pause_.stop();
  const std::string typed = FromQt(edit_.text());
  if (typed == box_.text.Get()) return;
  box_.UserText(typed);
  // More may be typed before the form is shown again, and is not to be replaced by this.
  if (box_.text.Get() == typed) shown_ = edit_.text();
}

}  // namespace velt

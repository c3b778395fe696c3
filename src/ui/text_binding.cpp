#include "ui/text_binding.h"

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
  if (!pause_.isActive()) DropTyping();
}

void TextBinding::DropTyping() {
  pause_.stop();
  const QString text = ToQt(box_.text.Get());
  // Setting the same text would move the cursor.
  if (edit_.text() != text) edit_.setText(text);
}

void TextBinding::Take() {
  pause_.stop();
  const std::string typed = FromQt(edit_.text());
  if (typed != box_.text.Get()) box_.UserText(typed);
}

}  // namespace velt

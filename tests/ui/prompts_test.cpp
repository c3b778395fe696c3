#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <stdexcept>
#include <string>

#include "adapters/qt/qt_prompts.h"
#include "ui/turn.h"

namespace velt {
namespace {

struct PromptsTest : testing::Test {
  PromptsTest() { prompts.SetOwner(&window); }
  // The title of the one box that is open; "" without one.
  std::string Open() {
    Turn();
    std::string titles;
    for (QDialog* dialog : window.findChildren<QDialog*>()) {
      if (dialog->isVisible()) titles += dialog->windowTitle().toStdString();
    }
    return titles;
  }
  QDialog& Visible() {
    for (QDialog* dialog : window.findChildren<QDialog*>()) {
      if (dialog->isVisible()) return *dialog;
    }
    throw std::logic_error("no box is open");
  }
  QMessageBox& Box() { return dynamic_cast<QMessageBox&>(Visible()); }

  QWidget window;
  QtPrompts prompts;
  std::string heard;
};

TEST_F(PromptsTest, BoxesComeOneAtATimeOnceTheWindowIsUp) {
  prompts.Tell({.title = "first", .text = "1"}, [this] { heard += "first;"; });
  prompts.Ask({.title = "second", .text = "2", .yes = "Try again", .no = "Close anyway"},
              [this](bool yes) { heard += yes ? "yes;" : "no;"; });
  EXPECT_EQ(Open(), "");
  window.show();
  EXPECT_EQ(Open(), "first");
  // What an answer brings up waits its turn too.
  prompts.Input({.title = "third", .prompt = "?", .initial = "14074"},
                [this](const std::optional<std::string>& text) { heard += text.value_or("-"); });
  Box().reject();
  EXPECT_EQ(Open(), "second");
  EXPECT_EQ(heard, "first;");
  EXPECT_EQ(Box().button(QMessageBox::Yes)->text(), "Try again");
  Box().button(QMessageBox::No)->click();
  EXPECT_EQ(Open(), "third");
  Visible().accept();
  EXPECT_EQ(Open(), "");
  EXPECT_EQ(heard, "first;no;14074");
}

TEST_F(PromptsTest, WhatIsDroppedAnswersNothingAndLaterBoxesStillCome) {
  window.show();
  prompts.Tell({.title = "open", .text = "1"}, [this] { heard += "open;"; });
  prompts.Tell({.title = "waiting", .text = "2"}, [this] { heard += "waiting;"; });
  EXPECT_EQ(Open(), "open");
  prompts.DropAll();
  EXPECT_EQ(Open(), "");
  prompts.Tell({.title = "later", .text = "3"}, [this] { heard += "later;"; });
  EXPECT_EQ(Open(), "later");
  Box().accept();
  Turn();
  EXPECT_EQ(heard, "later;");
}

}  // namespace
}  // namespace velt

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <string>

#include "adapters/qt/qt_prompts.h"
#include "ui/turn.h"

namespace velt {
namespace {

struct PromptsTest : testing::Test {
  PromptsTest() { prompts.SetOwner(&window); }
  void Tell(const std::string& title) {
    prompts.Tell({.title = title, .text = "?"}, [this, title] { heard += title + ";"; });
  }
  // The title of the one box that is open; "" without one.
  std::string Open() {
    Turn();
    std::string titles;
    for (QDialog* dialog : window.findChildren<QDialog*>()) {
      if (!dialog->isVisible()) continue;
      titles += dialog->windowTitle().toStdString();
      box = dialog;
    }
    return titles;
  }

  QWidget window;
  QDialog* box = nullptr;
  QtPrompts prompts;
  std::string heard;
};

TEST_F(PromptsTest, BoxesComeOneAtATimeOnceTheWindowIsUp) {
  Tell("first");
  prompts.Ask({.title = "second", .text = "2", .yes = "Try again", .no = "Close anyway"},
              [this](bool yes) { heard += yes ? "yes;" : "no;"; });
  EXPECT_EQ(Open(), "");
  window.show();
  QApplication::setActiveWindow(&window);
  ASSERT_EQ(Open(), "first");
  // What an answer brings up waits its turn too.
  prompts.Input({.title = "third", .prompt = "?", .initial = "14074"},
                [this](const std::optional<std::string>& text) { heard += text.value_or("-"); });
  box->reject();
  ASSERT_EQ(Open(), "second");
  EXPECT_EQ(heard, "first;");
  const auto& question = dynamic_cast<QMessageBox&>(*box);
  EXPECT_EQ(question.button(QMessageBox::Yes)->text(), "Try again");
  question.button(QMessageBox::No)->click();
  ASSERT_EQ(Open(), "third");
  box->accept();
  EXPECT_EQ(Open(), "");
  EXPECT_EQ(heard, "first;no;14074");

  // What is dropped answers nothing, and later boxes still come.
  Tell("open");
  Tell("waiting");
  EXPECT_EQ(Open(), "open");
  prompts.DropAll();
  EXPECT_EQ(Open(), "");
  Tell("later");
  ASSERT_EQ(Open(), "later");
  box->accept();
  Turn();
  EXPECT_EQ(heard, "first;no;14074later;");
}

TEST_F(PromptsTest, ABoxBelongsToTheDialogThatTheUserIsAt) {
  window.show();
  QApplication::setActiveWindow(&window);
  QDialog dialog(&window);
  dialog.show();
  QApplication::setActiveWindow(&dialog);
  Tell("told");
  ASSERT_EQ(Open(), "told");
  EXPECT_EQ(box->parentWidget(), &dialog);
}

}  // namespace
}  // namespace velt

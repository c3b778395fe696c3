#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QWindow>
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
  dialog.setGeometry(300, 300, 400, 300);
  dialog.show();
  QApplication::setActiveWindow(&dialog);
  const std::string title(60, 'm');
  Tell(title);
  Tell("next");
  ASSERT_EQ(Open(), title);
  EXPECT_EQ(box->parentWidget(), &dialog);
  EXPECT_GT(box->width(), box->fontMetrics().horizontalAdvance(box->windowTitle()));
  EXPECT_TRUE(box->geometry().contains(dialog.geometry().center()));
  // The desktop has not given the dialog the keyboard back yet.
  QObject::connect(box, &QDialog::finished, [] { QApplication::setActiveWindow(nullptr); });
  box->accept();
  ASSERT_EQ(Open(), "next");
  EXPECT_EQ(box->parentWidget(), &dialog);
}

// The transmitter has to be released whatever is asked.
TEST_F(PromptsTest, OnlyWhatIsMeantToBeIsReachedBelowABox) {
  QPushButton transmit("TX", &window);
  QPushButton receive("RX", &window);
  receive.move(100, 0);
  receive.setProperty(reachableBelowBoxes, true);
  for (QPushButton* button : {&transmit, &receive}) {
    QObject::connect(button, &QPushButton::clicked,
                     [this, button] { heard += button->text().toStdString() + ";"; });
  }
  const auto clickBoth = [&] {
    for (const QPushButton* button : {&transmit, &receive}) {
      const QPoint at = button->mapTo(&window, button->rect().center());
      QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, at);
    }
    QTest::keyClick(window.windowHandle(), Qt::Key_Space);
  };
  window.resize(300, 60);
  window.show();
  QApplication::setActiveWindow(&window);
  Tell("told");
  ASSERT_EQ(Open(), "told");
  EXPECT_FALSE(box->frameGeometry().intersects(window.frameGeometry()));
  clickBoth();
  EXPECT_EQ(heard, "RX;");
  box->accept();
  clickBoth();
  EXPECT_EQ(heard, "RX;told;TX;RX;RX;");  // the space bar goes to the button that was clicked last
}

}  // namespace
}  // namespace velt

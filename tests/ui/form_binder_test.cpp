// What all bindings have in common and where one can do harm, in a window of its own and the real
// loop. The tests of the windows go through their controls.
#include "ui/form_binder.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>

#include "ui/choice_box.h"
#include "ui/press_button.h"
#include "ui/turn.h"

namespace velt {
namespace {

struct FormBinderTest : testing::Test {
  FormBinderTest() {
    for (Control* control : std::vector<Control*>{&pressed, &choice, &typed, &patient}) {
      control->place = Rectangle{1, 1, 60, 22};
    }
    choice.items = {"LSB", "USB"};
    window.show();
    Activate(window);
    connections += pressed.mouseDown.Listen([this](int button) { heard = std::to_string(button); });
    connections += typed.edited.Listen([this] { heard = "typed " + typed.text.Get(); });
    connections += patient.edited.Listen([this] { heard = "patient " + patient.text.Get(); });
  }

  Form form;
  Label label{form};
  OptionButton pressed{form, "TX"};
  ListBox choice{form};
  TextBox typed{form}, patient{form};

  QWidget window;
  FormBinder binder{form, FormBinder::Places::OfForm};
  PressButton* pressedWidget = binder.Bind(pressed, new PressButton(&window), {"%1"});
  QComboBox* choiceWidget = binder.Bind(choice, new ChoiceBox(&window), {"Choice", "own"});
  QLineEdit* typedWidget = binder.Bind(typed, new QLineEdit(&window), {});
  QLineEdit* patientWidget = binder.Bind(patient, new QLineEdit(&window), {}, Typing::WhenOver);
  std::string heard;
  Connections connections;
};

TEST_F(FormBinderTest, WhatTheFormSaysIsShownInTheNextTurn) {
  using Row = std::tuple<const char*, std::function<void()>, std::function<bool()>>;
  EXPECT_EQ(choiceWidget->toolTip(), "own");
  const Row rows[] = {
      {"tool tip", [&] { choice.toolTip = "told"; },
       [&] { return choiceWidget->toolTip() == "told"; }},
      {"own again", [&] { choice.toolTip = ""; }, [&] { return choiceWidget->toolTip() == "own"; }},
      {"no room", [&] { choice.place = Rectangle{}; }, [&] { return !choiceWidget->isVisible(); }},
      {"index", [&] { choice.listIndex = 1; }, [&] { return choiceWidget->currentIndex() == 1; }},
      {"items", [&] { choice.items = std::vector<std::string>(3, "a"); },
       [&] { return choiceWidget->count() == 3 && choiceWidget->currentIndex() == 1; }},
  };
  for (const auto& [what, set, shown] : rows) {
    set();
    EXPECT_FALSE(shown()) << what << " in the middle of the program's logic";
    Turn();
    EXPECT_TRUE(shown()) << what;
  }
  EXPECT_EQ(choice.listIndex, 1);  // what was shown did not come back as the user's
}

TEST_F(FormBinderTest, APressActsAndAButtonShowsWhatCameOfIt) {
  QContextMenuEvent right(QContextMenuEvent::Keyboard, {}, {});
  const std::pair<const char*, std::function<void()>> presses[] = {
      {"1", [&] { QTest::mousePress(pressedWidget, Qt::LeftButton); }},
      {"", [&] { QTest::mouseRelease(pressedWidget, Qt::LeftButton); }},
      {"1", [&] { QTest::keyClick(pressedWidget, Qt::Key_Space); }},
      {"1", [&] { pressedWidget->toggle(); }},  // by a screen reader
      {"2", [&] { QApplication::sendEvent(pressedWidget, &right); }},
  };
  for (const auto& [button, press] : presses) {
    heard = "";
    press();
    EXPECT_EQ(heard, button);
    EXPECT_FALSE(pressedWidget->isChecked());
  }
  pressed.value = true;
  Turn();
  EXPECT_TRUE(pressedWidget->isChecked());
}

TEST_F(FormBinderTest, AChoiceTakesNeitherWheelNorArrowKeys) {
  QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
  QApplication::sendEvent(choiceWidget, &wheel);
  QTest::keyClick(choiceWidget, Qt::Key_Down);
  EXPECT_EQ(choice.listIndex, -1);
  EXPECT_NE(QApplication::activePopupWidget(), nullptr);
}

TEST_F(FormBinderTest, AFieldBeingEditedIsLeftAlone) {
  QTest::keyClicks(typedWidget, "radio");
  typedWidget->setCursorPosition(2);
  typed.Touch();
  Turn();
  EXPECT_EQ(typedWidget->cursorPosition(), 2);

  patientWidget->setFocus();
  QTest::keyClicks(patientWidget, "1");
  patient.text = "9";  // while it is being typed
  Turn();
  EXPECT_EQ(patientWidget->text(), "1");
  EXPECT_EQ(heard, "typed radio");
  EXPECT_TRUE(QTest::qWaitFor([this] { return heard == "patient 1"; }, 3000));
  heard = "";
  patient.text = "16";  // by the program, as soon as the typing is over
  Turn();
  EXPECT_EQ(patientWidget->text(), "16");
  typedWidget->setFocus();
  EXPECT_EQ(heard, "");  // nothing was typed
}

TEST_F(FormBinderTest, WhatAShownChangeBringsAboutIsShownInTheSameTurn) {
  binder.Watch(label, [this] { typed.text = label.caption; });
  int rounds = 0;
  binder.Watch(choice, [this, &rounds] {
    ++rounds;
    choice.Touch();  // without an end
  });
  choice.Touch();
  label.caption = "new";
  binder.Sync();
  EXPECT_EQ(typedWidget->text(), "new");
  EXPECT_LT(rounds, 20);
}

}  // namespace
}  // namespace velt

// One form with a control of each kind, bound to one window, shown by the real loop.
#include "ui/form_binder.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QButtonGroup>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include "ui/choice_box.h"
#include "ui/click_label.h"
#include "ui/press_button.h"
#include "ui/turn.h"

namespace velt {
namespace {

struct FormBinderTest : testing::Test {
  FormBinderTest() {
    for (const auto& [control, widget] : pairs) control.place = Rectangle{1, 1, 60, 22};
    list.items = choice.items = editable.items = {"LSB", "USB"};
    list.listIndex = 1;
    second.place = Rectangle{1, 30, 60, 22};
    window.resize(200, 100);
    window.show();
    QApplication::setActiveWindow(&window);
    Turn();
    connections += label.clicked.Listen([this] { heard = "label"; });
    connections += pressed.mouseDown.Listen(
        [this](int mouseButton) { heard = "pressed " + std::to_string(mouseButton); });
    connections += typed.edited.Listen([this] { heard = "typed " + typed.text.Get(); });
    connections += patient.edited.Listen([this] { heard = "patient " + patient.text.Get(); });
  }

  Form form;
  RigLabel label{form, "7.100.00"};
  RigLabel value{form};
  Button button{form, "Start"};
  CheckBox check{form, "Bars"};
  OptionButton first{form, "Rig 1"};
  OptionButton second{form, "Rig 2"};
  OptionButton pressed{form, "TX"};
  ListBox choice{form};
  ListBox editable{form};
  ListBox list{form};
  TextBox typed{form};
  TextBox patient{form};
  MenuItem menu{form, "Fish && &Chips"};
  struct Pair {
    Control& control;
    QWidget& widget;
  };
  std::vector<Pair> pairs;  // all but the menu's

  QWidget window;
  QButtonGroup group;
  FormBinder binder{form, FormBinder::Places::OfForm};
  template <class W>
  W* Paired(Control& control, W* widget) {
    pairs.push_back({control, *widget});
    return widget;
  }
  template <class W>
  W* Bind(auto& control, W* widget, const Words& words) {
    binder.Bind(control, widget, words);
    return Paired(control, widget);
  }
  ClickLabel* labelWidget = Bind(label, new ClickLabel(&window), {"Frequency %1", "own"});
  QLabel* valueWidget = Bind(value, new QLabel(&window), {"Value: %1", "own", {}, "none"});
  QAbstractButton* buttonWidget = Bind(button, new QPushButton(&window), {"%1 it", "own", 'S'});
  QAbstractButton* checkWidget = Bind(check, new QPushButton(&window), {"Check %1", "own"});
  QAbstractButton* firstWidget =
      Paired(first, binder.Bind(first, new QRadioButton(&window), group, {"%1", "own"}));
  QAbstractButton* secondWidget =
      Paired(second, binder.Bind(second, new QRadioButton(&window), group, {"%1", "own"}));
  PressButton* pressedWidget = Bind(pressed, new PressButton(&window), {"%1", "own"});
  QComboBox* choiceWidget = Bind(choice, new ChoiceBox(&window), {"Choice", "own"});
  QComboBox* editableWidget = Bind(editable, MakeEditable(), {"Editable", "own"});
  QListWidget* listWidget = Bind(list, new QListWidget(&window), {"List", "own"});
  QLineEdit* typedWidget = Bind(typed, new QLineEdit(&window), {"Typed", "own"});
  QLineEdit* patientWidget = Paired(
      patient, binder.Bind(patient, new QLineEdit(&window), {"Patient", "own"}, Typing::WhenOver));
  QAction* action = binder.Bind(menu, new QAction(&window));
  std::string heard;
  Connections connections;

  QComboBox* MakeEditable() {
    auto* box = new QComboBox(&window);
    box->setEditable(true);
    return box;
  }
};

TEST_F(FormBinderTest, EveryWidgetMirrorsWhatAllControlsHave) {
  for (const auto& [control, widget] : pairs) {
    SCOPED_TRACE(widget.metaObject()->className());
    EXPECT_TRUE(widget.isVisible() && widget.isEnabled());
    EXPECT_EQ(widget.toolTip(), "own");
    control.place = Rectangle{3, 4, 14, 14};
    control.toolTip = "told";
    control.enabled = false;
    Turn();
    EXPECT_EQ(widget.geometry(), QRect(3, 4, 14, 14));
    EXPECT_EQ(widget.toolTip(), "told");
    EXPECT_FALSE(widget.isEnabled());
    control.toolTip = "";
    control.visible = false;
    Turn();
    EXPECT_FALSE(widget.isVisible());
    EXPECT_EQ(widget.toolTip(), "own");
    control.visible = true;
    control.place = Rectangle{3, 4, 0, 14};  // no room for it
    Turn();
    EXPECT_FALSE(widget.isVisible());
  }
}

TEST_F(FormBinderTest, WhatTheFormSaysIsShownInTheNextTurn) {
  struct Row {
    std::function<void()> set;
    QObject* shows;
    std::map<const char*, QVariant> properties;
  };
  const std::vector<std::string> three{"AM", "FM", "CW"};
  const Row rows[] = {
      {[&] { label.caption = "A & B"; },
       labelWidget,
       {{"text", "A && B"}, {"accessibleName", "Frequency A & B"}}},
      {[&] { value.caption = "<b>5"; },
       valueWidget,
       {{"text", "<b>5"},
        {"accessibleName", "Value: <b>5"},
        {"textFormat", QVariant::fromValue(Qt::PlainText)}}},
      {[&] { value.caption = ""; }, valueWidget, {{"text", "none"}}},
      {[&] { button.caption = "Stop"; },
       buttonWidget,
       {{"text", "&Stop"}, {"accessibleName", "Stop it"}, {"shortcut", QKeySequence("Alt+S")}}},
      {[&] { check.value = 1; }, checkWidget, {{"checked", true}}},
      {[&] { check.caption = "<"; }, checkWidget, {{"text", "<"}, {"accessibleName", "Check <"}}},
      {[&] { first.value = true; }, firstWidget, {{"checked", true}}},
      {[&] {
         first.value = false;
         second.value = true;
       },
       secondWidget,
       {{"checked", true}}},
      {[&] { second.value = false; }, secondWidget, {{"checked", false}}},
      {[&] { choice.listIndex = 1; }, choiceWidget, {{"currentText", "USB"}}},
      {[&] { choice.items = three; }, choiceWidget, {{"count", 3}, {"currentText", "FM"}}},
      {[&] { editable.text = "DIG"; }, editableWidget, {{"currentText", "DIG"}}},
      {[&] { list.items = three; }, listWidget, {{"count", 3}, {"currentRow", 1}}},
      {[&] { list.listIndex = 2; }, listWidget, {{"currentRow", 2}}},
      {[&] { typed.text = "host"; }, typedWidget, {{"text", "host"}}},
      {[&] { menu.caption = "&More"; }, action, {{"text", "&More"}}},
      {[&] { menu.checked = true; }, action, {{"checked", true}}},
      {[&] { menu.enabled = false; }, action, {{"enabled", false}}},
      {[&] { menu.visible = false; }, action, {{"visible", false}}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::to_string(&row - rows) + row.shows->metaObject()->className());
    Turn();
    const auto shown = [&] {
      return std::ranges::all_of(row.properties, [&row](const auto& property) {
        return row.shows->property(property.first) == property.second;
      });
    };
    row.set();
    EXPECT_FALSE(shown()) << "in the middle of the program's logic";
    Turn();
    EXPECT_TRUE(shown());
  }
  EXPECT_EQ(heard, "");
  EXPECT_EQ(list.listIndex, 2);  // what was shown did not come back as the user's
}

TEST_F(FormBinderTest, WhatTheUserDoesReachesTheForm) {
  struct Row {
    const char* what;
    std::function<void()> act;
    std::function<bool()> reached;
  };
  const auto click = [](QWidget* widget) {
    return [=] { QTest::mouseClick(widget, Qt::LeftButton, {}, {8, 8}); };
  };
  const auto press = [](QWidget* widget, Qt::Key key) {
    return [=] { QTest::keyClick(widget, key); };
  };
  const auto hears = [this](const char* what) { return [this, what] { return heard == what; }; };
  QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, {}, {});
  QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
  const Row rows[] = {
      {"label", click(labelWidget), hears("label")},
      {"check", click(checkWidget), [&] { return check.value == 1; }},
      {"check again", click(checkWidget), [&] { return check.value == 0; }},
      {"press", [&] { QTest::mousePress(pressedWidget, Qt::LeftButton); }, hears("pressed 1")},
      {"its end", [&] { QTest::mouseRelease(pressedWidget, Qt::LeftButton); }, hears("")},
      {"press by key", press(pressedWidget, Qt::Key_Space), hears("pressed 1")},
      {"press by a screen reader", [&] { pressedWidget->toggle(); }, hears("pressed 1")},
      {"press by the menu key", [&] { QApplication::sendEvent(pressedWidget, &menuKey); },
       hears("pressed 2")},
      {"choice", press(choiceWidget, Qt::Key_U), [&] { return choice.listIndex == 1; }},
      {"choice by wheel", [&] { QApplication::sendEvent(choiceWidget, &wheel); },
       [&] { return choice.listIndex == 1; }},
      {"choice by arrow keys", press(choiceWidget, Qt::Key_Up),
       [&] { return choice.listIndex == 1 && QApplication::activePopupWidget() != nullptr; }},
      {"editable", press(editableWidget->lineEdit(), Qt::Key_X),
       [&] { return editable.text.Get() == "x"; }},
      {"list", press(listWidget, Qt::Key_Up), [&] { return list.listIndex == 0; }},
  };
  for (const Row& row : rows) {
    heard = "";
    row.act();
    EXPECT_TRUE(row.reached()) << row.what;
    Turn();
    EXPECT_TRUE(row.reached()) << row.what << " after it was shown";
    EXPECT_FALSE(pressedWidget->isChecked()) << row.what;
  }
}

TEST_F(FormBinderTest, AFieldBeingEditedIsLeftAlone) {
  QTest::keyClicks(typedWidget, "radio");
  typedWidget->setCursorPosition(2);
  typed.enabled = false;
  typed.enabled = true;
  Turn();
  EXPECT_EQ(typedWidget->cursorPosition(), 2);
  typed.text = "other";  // by the program
  Turn();
  EXPECT_EQ(typedWidget->text(), "other");

  patientWidget->setFocus();
  QTest::keyClicks(patientWidget, "1");
  patient.text = "9";  // while it is being typed
  Turn();
  EXPECT_EQ(patientWidget->text(), "1");
  EXPECT_EQ(heard, "typed radio");
  EXPECT_TRUE(QTest::qWaitFor([this] { return heard == "patient 1"; }, 3000));
}

TEST_F(FormBinderTest, WhatAShownChangeBringsAboutIsShownInTheSameTurn) {
  binder.Watch(label, [this] { value.caption = label.caption; });
  int rounds = 0;
  binder.Watch(check, [this, &rounds] {
    ++rounds;
    check.Touch();  // without an end
  });
  check.Touch();
  label.caption = "new";
  binder.Sync();
  EXPECT_EQ(valueWidget->text(), "new");
  EXPECT_LT(rounds, 20);
}

}  // namespace
}  // namespace velt

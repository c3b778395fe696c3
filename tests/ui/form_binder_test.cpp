// One form with a control of each kind, bound to one window, shown by the real loop.
#include "ui/form_binder.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QButtonGroup>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTest>

#include "ui/choice_box.h"
#include "ui/click_label.h"
#include "ui/form_dialog.h"
#include "ui/lamp_widget.h"
#include "ui/meter_widget.h"
#include "ui/press_button.h"
#include "ui/scope_widget.h"
#include "ui/symbol_button.h"
#include "ui/turn.h"

namespace velt {
namespace {

struct FormBinderTest : testing::Test {
  FormBinderTest() {
    for (Control* control : controls) control->place = Rectangle{1, 1, 60, 22};
    list.items = choice.items = editable.items = {"LSB", "USB"};
    list.listIndex = 1;
    second.place = Rectangle{1, 30, 60, 22};
    window.resize(200, 100);
    window.show();
    QApplication::setActiveWindow(&window);
    Turn();
    connections += button.clicked.Listen([this] { heard = "button"; });
    connections += image.clicked.Listen([this] { heard = "image"; });
    connections += label.clicked.Listen([this] { heard = "label"; });
    connections += menu.clicked.Listen([this] { heard = "menu"; });
    connections += pressed.mouseDown.Listen(
        [this](int mouseButton) { heard = "pressed " + std::to_string(mouseButton); });
    connections += typed.edited.Listen([this] { heard = "typed " + typed.text.Get(); });
    connections += patient.edited.Listen([this] { heard = "patient " + patient.text.Get(); });
  }

  Form form;
  RigLabel label{form, "7.100.00"};
  RigLabel value{form};
  Frame frame{form};
  Lamp lamp{form};
  Button button{form, "Start"};
  Image image{form, "Play"};
  CheckBox check{form, "Bars"};
  OptionButton first{form, "Rig 1"};
  OptionButton second{form, "Rig 2"};
  OptionButton pressed{form, "TX"};
  ListBox choice{form};
  ListBox editable{form};
  ListBox list{form};
  TextBox typed{form};
  TextBox patient{form};
  SliderControl slider{form, 1, 100, 15};
  MenuItem menu{form, "Fish && &Chips"};
  MeterPicture meter{form};
  ScopeControl scope{form};
  std::vector<Control*> controls{&label, &value, &frame,   &lamp,    &button, &image,
                                 &check, &first, &second,  &pressed, &choice, &editable,
                                 &list,  &typed, &patient, &slider,  &meter,  &scope};

  Raster raster;
  QWidget window;
  QButtonGroup group;
  FormBinder binder{form, FormBinder::Places::OfForm};
  ClickLabel* labelWidget = binder.Bind(label, new ClickLabel(&window), {"Frequency %1", "own"});
  QLabel* valueWidget = binder.Bind(value, new QLabel(&window), {"Value: %1", "own", {}, "none"});
  QGroupBox* frameWidget = binder.Bind(frame, new QGroupBox(&window));
  LampWidget* lampWidget = binder.Bind(lamp, new LampWidget(&window), {"Lamp", "own"});
  QAbstractButton* buttonWidget =
      binder.Bind(button, new QPushButton(&window), {"%1 it", "own", 'S'});
  SymbolButton* imageWidget =
      binder.Bind(image, new SymbolButton(SymbolButton::Symbol::Play, &window), {"Picture", "own"});
  QAbstractButton* checkWidget = binder.Bind(check, new QPushButton(&window), {"Check %1", "own"});
  QAbstractButton* firstWidget =
      binder.Bind(first, new QRadioButton(&window), group, {"%1", "own"});
  QAbstractButton* secondWidget =
      binder.Bind(second, new QPushButton(&window), group, {"%1", "own"});
  PressButton* pressedWidget = binder.Bind(pressed, new PressButton(&window), {"%1", "own"});
  QComboBox* choiceWidget = binder.Bind(choice, new ChoiceBox(&window), {"Choice", "own"});
  QComboBox* editableWidget = binder.Bind(editable, MakeEditable(), {"Editable", "own"});
  QListWidget* listWidget = binder.Bind(list, new QListWidget(&window), {"List", "own"});
  QLineEdit* typedWidget = binder.Bind(typed, new QLineEdit(&window), {"Typed", "own"});
  QLineEdit* patientWidget =
      binder.Bind(patient, new QLineEdit(&window), {"Patient", "own"}, Typing::WhenOver);
  QSlider* sliderWidget =
      binder.Bind(slider, new QSlider(Qt::Vertical, &window), {"Slider", "own"});
  QAction* action = binder.Bind(menu, new QAction(&window));
  MeterWidget* meterWidget = binder.Bind(meter, new MeterWidget(&window), {"Meter", "own"});
  ScopeWidget* scopeWidget =
      binder.Bind(scope, new ScopeWidget([this]() -> const Raster& { return raster; }, &window),
                  {"Scope", "own"});
  std::string heard;
  Connections connections;

  QComboBox* MakeEditable() {
    auto* box = new QComboBox(&window);
    box->setEditable(true);
    return box;
  }
};

TEST_F(FormBinderTest, EveryWidgetMirrorsWhatAllControlsHave) {
  const std::vector<QWidget*> widgets{
      labelWidget, valueWidget, frameWidget,   lampWidget,    buttonWidget, imageWidget,
      checkWidget, firstWidget, secondWidget,  pressedWidget, choiceWidget, editableWidget,
      listWidget,  typedWidget, patientWidget, sliderWidget,  meterWidget,  scopeWidget};
  ASSERT_EQ(widgets.size(), controls.size());
  for (size_t i = 0; i < controls.size(); ++i) {
    Control& control = *controls[i];
    const QWidget& widget = *widgets[i];
    EXPECT_TRUE(widget.isVisible() && widget.isEnabled()) << i;
    EXPECT_EQ(widget.toolTip(), &widget == frameWidget ? "" : "own") << i;
    control.place = Rectangle{3, 4, 14, 14};
    control.toolTip = "told";
    control.enabled = false;
    Turn();
    EXPECT_EQ(widget.geometry(), QRect(3, 4, 14, 14)) << i;
    EXPECT_EQ(widget.toolTip(), "told") << i;
    EXPECT_FALSE(widget.isEnabled()) << i;
    control.toolTip = "";
    control.visible = false;
    Turn();
    EXPECT_FALSE(widget.isVisible()) << i;
    EXPECT_EQ(widget.toolTip(), &widget == frameWidget ? "" : "own") << i;
    control.visible = true;
    control.place = Rectangle{3, 4, 0, 14};  // no room for it
    Turn();
    EXPECT_FALSE(widget.isVisible()) << i;
  }
}

TEST_F(FormBinderTest, WhatTheFormSaysIsShownInTheNextTurn) {
  struct Row {
    const char* what;
    std::function<void()> set;
    std::function<bool()> shown;
    QWidget* drawn = nullptr;  // it has to look different afterwards
  };
  meter.place = Rectangle{1, 1, 14, 60};
  scope.place = Rectangle{1, 1, 60, 60};
  Turn();
  const Row rows[] = {
      {"label", [&] { label.caption = "A & B"; },
       [&] {
         return labelWidget->accessibleName() == "Frequency A & B" &&
                labelWidget->text() == "A && B";
       }},
      {"stale label", [&] { label.stale = true; }, {}, labelWidget},
      {"value", [&] { value.caption = "<b>5"; },
       [&] {
         return valueWidget->text() == "<b>5" && valueWidget->accessibleName() == "Value: <b>5" &&
                valueWidget->textFormat() == Qt::PlainText;
       }},
      {"stale value", [&] { value.stale = true; }, {}, valueWidget},
      {"unknown value", [&] { value.caption = ""; }, [&] { return valueWidget->text() == "none"; }},
      {"frame", [&] { frame.caption = "Rig && more"; },
       [&] { return frameWidget->title() == "Rig && more"; }},
      {"lamp", [&] { lamp.colour = LampColour::Amber; }, {}, lampWidget},
      {"button", [&] { button.caption = "Stop"; },
       [&] {
         return buttonWidget->text() == "&Stop" && buttonWidget->accessibleName() == "Stop it" &&
                buttonWidget->shortcut() == QKeySequence("Alt+S");
       }},
      {"image", [&] { image.tag = "Stop"; }, {}, imageWidget},
      {"check", [&] { check.value = 1; }, [&] { return checkWidget->isChecked(); }},
      {"check's caption", [&] { check.caption = "<"; },
       [&] { return checkWidget->text() == "<" && checkWidget->accessibleName() == "Check <"; }},
      {"option", [&] { first.value = true; }, [&] { return firstWidget->isChecked(); }},
      {"other option",
       [&] {
         first.value = false;
         second.value = true;
       },
       [&] { return secondWidget->isChecked() && !firstWidget->isChecked(); }},
      {"no option", [&] { second.value = false; }, [&] { return !secondWidget->isChecked(); }},
      {"press button", [&] { pressed.value = true; }, [&] { return pressedWidget->isChecked(); }},
      {"its caption", [&] { pressed.caption = "20m"; },
       [&] { return pressedWidget->text() == "20m"; }},
      {"choice", [&] { choice.listIndex = 1; },
       [&] { return choiceWidget->currentText() == "USB"; }},
      {"choice's items",
       [&] {
         choice.items = {"AM", "FM", "CW"};
       },
       [&] { return choiceWidget->count() == 3 && choiceWidget->currentText() == "FM"; }},
      {"editable", [&] { editable.text = "DIG"; },
       [&] { return editableWidget->currentText() == "DIG"; }},
      {"list's items",
       [&] {
         list.items = {"a", "b", "c"};
       },
       [&] { return listWidget->count() == 3 && listWidget->currentRow() == 1; }},
      {"list", [&] { list.listIndex = 2; }, [&] { return listWidget->currentRow() == 2; }},
      {"text", [&] { typed.text = "host"; }, [&] { return typedWidget->text() == "host"; }},
      {"slider", [&] { slider.Set(100); }, [&] { return sliderWidget->value() == 100; }},
      {"menu", [&] { menu.caption = "&More"; }, [&] { return action->text() == "&More"; }},
      {"menu's mark", [&] { menu.checked = true; }, [&] { return action->isChecked(); }},
      {"menu off", [&] { menu.enabled = false; }, [&] { return !action->isEnabled(); }},
      {"menu hidden", [&] { menu.visible = false; }, [&] { return !action->isVisible(); }},
      {"meter", [&] { meter.topTwips = -20 * kTwipsPerPixel; }, {}, meterWidget},
      {"frame of the scope",
       [&] {
         raster = Raster(60, 60, Colour(255));

         scope.frame = 1;
       },
       {},
       scopeWidget},
      {"grid",
       [&] {
         scope.verticalGrid = {{5, 0, 5, 9}};
       },
       {},
       scopeWidget},
      {"grid",
       [&] {
         scope.horizontalGrid = {{0, 5, 9, 5}};
       },
       {},
       scopeWidget},
      {"marker",
       [&] {
         scope.markers = {{7, 0, 7, 9, true, true}};
       },
       {},
       scopeWidget},
      {"grid's colour", [&] { scope.gridColour = 0xFF00FF00; }, {}, scopeWidget},
      {"marker's colour", [&] { scope.markerColour = 0xFFFF0000; }, {}, scopeWidget},
  };
  for (const Row& row : rows) {
    if (row.drawn) row.drawn->raise();
    Turn();
    const QImage before = OnScreen(window);
    const auto shown = [&] { return row.drawn ? OnScreen(window) != before : row.shown(); };
    row.set();
    EXPECT_FALSE(shown()) << row.what << " in the middle of the program's logic";
    Turn();
    EXPECT_TRUE(shown()) << row.what;
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
  const auto hears = [this](const char* what) { return [this, what] { return heard == what; }; };
  const Row rows[] = {
      {"label", click(labelWidget), hears("label")},
      {"button", click(buttonWidget), hears("button")},
      {"image", click(imageWidget), hears("image")},
      {"menu", [&] { action->trigger(); }, hears("menu")},
      {"check", click(checkWidget), [&] { return check.value == 1; }},
      {"check again", click(checkWidget), [&] { return check.value == 0; }},
      {"option", click(firstWidget), [&] { return first.value.Get(); }},
      {"other option", [&] { QTest::keyClick(firstWidget, Qt::Key_Down); },
       [&] { return second.value.Get(); }},
      {"press button", [&] { QTest::mousePress(pressedWidget, Qt::LeftButton); },
       hears("pressed 1")},
      {"press button's end",
       [&] {
         heard = "";
         QTest::mouseRelease(pressedWidget, Qt::LeftButton);
       },
       [&] { return heard.empty() && !pressedWidget->isChecked(); }},
      {"press button by key", [&] { QTest::keyClick(pressedWidget, Qt::Key_Space); },
       hears("pressed 1")},
      {"press button by a screen reader",
       [&] {
         heard = "";
         pressedWidget->toggle();
       },
       [&] { return heard == "pressed 1" && !pressedWidget->isChecked(); }},
      {"press button, right",
       [&] {
         QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
         QApplication::sendEvent(pressedWidget, &event);
       },
       hears("pressed 2")},
      {"choice", [&] { QTest::keyClick(choiceWidget, Qt::Key_U); },
       [&] { return choice.listIndex == 1; }},
      {"choice by wheel",
       [&] {
         QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
         QApplication::sendEvent(choiceWidget, &wheel);
       },
       [&] { return choice.listIndex == 1; }},
      {"choice by arrow keys", [&] { QTest::keyClick(choiceWidget, Qt::Key_Up); },
       [&] { return choice.listIndex == 1 && QApplication::activePopupWidget() != nullptr; }},
      {"editable", [&] { QTest::keyClicks(editableWidget->lineEdit(), "X"); },
       [&] { return editable.text.Get() == "X"; }},
      {"list", [&] { QTest::keyClick(listWidget, Qt::Key_Up); },
       [&] { return list.listIndex == 0; }},
      {"slider", [&] { QTest::keyClick(sliderWidget, Qt::Key_Up); },
       [&] { return slider.value == 16; }},
      {"text", [&] { QTest::keyClicks(typedWidget, "ab"); }, hears("typed ab")},
  };
  for (const Row& row : rows) {
    row.act();
    EXPECT_TRUE(row.reached()) << row.what;
    Turn();
    EXPECT_TRUE(row.reached()) << row.what << " after it was shown";
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
  QTest::keyClicks(patientWidget, "5");
  Turn();
  EXPECT_EQ(patientWidget->text(), "15");
  EXPECT_EQ(patient.text.Get(), "1");
  typedWidget->setFocus();
  EXPECT_EQ(heard, "patient 15");
  heard = "";
  patient.text = "16";  // by the program, as soon as the typing is over
  Turn();
  EXPECT_EQ(patientWidget->text(), "16");
  patientWidget->setFocus();
  typedWidget->setFocus();
  EXPECT_EQ(heard, "");  // nothing was typed
  QTest::keyClicks(patientWidget, "0");
  binder.DropTyping();
  EXPECT_EQ(patientWidget->text(), "16");
  patient.text = "17";
  Turn();
  EXPECT_EQ(patientWidget->text(), "17");
}

TEST_F(FormBinderTest, WhatAShownChangeBringsAboutIsShownInTheSameTurn) {
  binder.Watch(label, [this] { value.caption = label.caption; });
  int rounds = 0;
  binder.Watch(lamp, [this, &rounds] {
    ++rounds;
    lamp.Touch();  // without an end
  });
  lamp.Touch();
  label.caption = "new";
  binder.Sync();
  EXPECT_EQ(valueWidget->text(), "new");
  EXPECT_LT(rounds, 20);
}

}  // namespace
}  // namespace velt

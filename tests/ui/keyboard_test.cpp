// The main window without a mouse and without looking: keys, pop-ups and boxes opened by them, and
// the texts that are always there.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

#include "adapters/qt/qt_prompts.h"
#include "support/doubles.h"
#include "ui/main_window.h"
#include "ui/omnirig_window.h"
#include "ui/turn.h"

namespace velt {
namespace {

struct KeyboardTest : testing::Test, ProgramFixture {
  KeyboardTest() {
    program->layout.Form_Resize();
    window.show();
    Turn();
    QApplication::setActiveWindow(&window);
  }
  QWidget& Find(const QString& name) {
    for (QWidget* widget : window.findChildren<QWidget*>()) {
      if (widget->accessibleName().startsWith(name)) return *widget;
    }
    ADD_FAILURE() << "no " << name.toStdString();
    return window;
  }
  QRgb Ground(const QWidget& widget) {
    return OnScreen(window).pixel(widget.geometry().topLeft() + QPoint(1, 4));
  }

  Main& form = program->form;
  const Raster raster{100, 100};
  MainWindow window{form, [this]() -> const Raster& { return raster; }};
};

TEST_F(KeyboardTest, KeysPressWhatHasTheFocusAndOpenMenusAndManual) {
  std::string heard;
  const auto hear = [&](Event<>& event, const char* what) {
    connections += event.Listen([&heard, what] { heard = what; });
  };
  hear(form.cmdOptions.clicked, "options");
  hear(form.Image2.clicked, "file");
  hear(form.Image3.clicked, "CAT");
  hear(form.mnumanual.clicked, "manual");
  hear(form.imgStartStop.clicked, "start");
  hear(form.lblFrequency.clicked, "frequency");
  connections += form.optTXRX[0].mouseDown.Listen([&](int) { heard += "TX"; });
  struct Row {
    const char* focus;
    Qt::Key key;
    Qt::KeyboardModifier modifier;
    const char* heard;
  };
  for (const Row& row : {Row{"Spectrum display", Qt::Key_O, Qt::AltModifier, "options"},
                         {"Spectrum display", Qt::Key_F, Qt::AltModifier, "file"},
                         {"Transmit", Qt::Key_C, Qt::AltModifier, "CAT"},
                         {"Spectrum display", Qt::Key_F1, Qt::NoModifier, "manual"},
                         {"Start or stop", Qt::Key_Return, Qt::NoModifier, "start"},
                         {"Frequency ", Qt::Key_Enter, Qt::NoModifier, "frequency"},
                         {"CAT configuration", Qt::Key_Return, Qt::NoModifier, "CAT"},
                         {"Transmit", Qt::Key_Return, Qt::NoModifier, "TX"},
                         {"Spectrum display", Qt::Key_Return, Qt::NoModifier, ""}}) {
    heard.clear();
    Find(row.focus).setFocus();
    QTest::keyClick(window.windowHandle(), row.key, row.modifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return heard == row.heard; }, 2000))
        << row.heard << " " << heard;
  }
}

TEST_F(KeyboardTest, WhatAUserHasToKnowStandsInTheWindow) {
  EXPECT_TRUE(Find("Press \u25B6 to listen to ").isVisible());
  EXPECT_EQ(Find("Sound source: no sound").toolTip(), "Sound source: no sound");
  StartCapture();
  Turn();
  EXPECT_FALSE(Find("Press \u25B6 to listen to ").isVisible());
  EXPECT_EQ(Find("Sound source: ").toolTip(), "Sound source: The usb");
  audio.Tell(AudioEvent::Kind::Lost, "The sound server went away & will not come back for long.");
  scheduler.RunPosted();
  Turn();
  const QWidget& notice = Find("Notice, click to dismiss: ");
  EXPECT_TRUE(
      notice.toolTip().startsWith("The sound server went away & will not come back for "
                                  "long. Waiting for it to come back."));
  EXPECT_EQ(Ground(notice), 0xFFFFD45E);
  program->notices.Raise(NoticeKind::Transmitter, "It transmits");
  Turn();
  EXPECT_EQ(Ground(notice), 0xFFC4161C);
  EXPECT_TRUE(notice.toolTip().startsWith("It transmits"));

  Reachable(true);
  program->rig.link.StartOmniRig({});
  scheduler.RunPosted();
  Turn();
  EXPECT_EQ(Find("Link to the rig").accessibleName(), "Link to the rig: linked");
  EXPECT_EQ(Find("Lamp of the link").accessibleName(), "Lamp of the link: green");
  QWidget& cat = Find("CAT configuration: linked");
  EXPECT_EQ(OnScreen(window).pixelColor(cat.geometry().topLeft() + QPoint(5, 5)),
            QColor("#2ea043"));
}

TEST_F(KeyboardTest, TheDialogGroupsDigitsAndCopiesTheCommand) {
  OmniRigWindow dialog(program->catForm, &window);
  Reachable(true);
  rig1.Tune(14074000);
  program->rig.link.StartOmniRig({});
  program->rig.dialog.Open();
  scheduler.RunPosted();
  Turn();
  const auto press = [&](const QString& name) {
    for (auto* button : dialog.findChildren<QAbstractButton*>()) {
      if (button->accessibleName() == name) button->click();
    }
  };
  QStringList texts;
  for (const auto* label : dialog.findChildren<QLabel*>()) texts += label->text();
  EXPECT_TRUE(texts.contains("14 074 000 Hz"));
  EXPECT_EQ(dialog.findChild<QComboBox*>()->currentText(), "USB");
  press("Copy the command that starts the server");
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            program->catForm.lblCommand.caption.Get());
}

// Pop-ups of the window's own.
struct PopupTest : KeyboardTest {
  PopupTest() {
    window.hide();
    own.SetOwner(&window);
    window.show();
    Turn();
    QApplication::setActiveWindow(&window);
  }
  QMenu* Menu() {
    for (QMenu* menu : window.findChildren<QMenu*>()) {
      if (menu->isVisible()) return menu;
    }
    return nullptr;
  }
  void Open() {
    const Rectangle& place = form.Image2.place;
    own.Popup({place.left, place.top, place.width, place.height},
              {{"&One", false, true, "", [] {}, {}}, {"Two", false, true, "", [] {}, {}}},
              [this](const std::function<void()>&) { window.FocusScope(); });
    Turn();
  }
  QtPrompts own;
};

TEST_F(PopupTest, AMenuStandsBelowItsButtonAndTheKeyboardGoesBackThere) {
  QWidget& file = Find("File menu");
  for (const bool byKeyboard : {true, false}) {
    file.setFocus();
    if (byKeyboard) {
      QTest::keyClick(window.windowHandle(), Qt::Key_Shift);
    } else {
      QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, {300, 10});
      file.setFocus();
    }
    Open();
    ASSERT_NE(Menu(), nullptr);
    EXPECT_EQ(Menu()->pos(), file.mapToGlobal(QPoint(0, file.height())));
    EXPECT_EQ(Menu()->activeAction(), byKeyboard ? Menu()->actions().front() : nullptr);
    Menu()->hide();
    Turn();
    EXPECT_EQ(QApplication::focusWidget(), byKeyboard ? &file : &Find("Spectrum display"));
  }
}

TEST_F(PopupTest, ABoxBelongsToTheDialogThatTheUserIsAt) {
  QDialog dialog(&window);
  dialog.show();
  QApplication::setActiveWindow(&dialog);
  own.Input({.title = "Set", .prompt = "Enter", .initial = "14.074.00", .example = "For example 1"},
            {});
  ASSERT_TRUE(QTest::qWaitFor([&] { return !dialog.findChildren<QDialog*>().isEmpty(); }, 2000));
  const auto boxes = dialog.findChildren<QDialog*>();
  ASSERT_EQ(boxes.size(), 1);
  const auto* field = boxes.front()->findChild<QLineEdit*>();
  EXPECT_EQ(field->selectedText(), "14.074.00");
  const auto labels = boxes.front()->findChildren<QLabel*>();
  EXPECT_EQ(labels.back()->text(), "For example 1");
  EXPECT_GT(labels.back()->mapTo(boxes.front(), QPoint()).y(),
            field->mapTo(boxes.front(), QPoint()).y());
}

}  // namespace
}  // namespace velt

// The main window without a mouse and without looking: pop-ups opened by keys, the texts that are
// always there, sliders and lights.
#include <QClipboard>
#include <QMenu>
#include <QSlider>

#include "adapters/qt/qt_prompts.h"
#include "ui/press_button.h"
#include "ui/qt_text.h"
#include "ui/sysinfo_window.h"
#include "ui/window_fixture.h"

namespace velt {
namespace {

using KeyboardTest = WindowFixture;

TEST_F(KeyboardTest, WhatAUserHasToKnowStandsInTheWindow) {
  const QWidget& listen = Find(ToQt(form.lblListen.caption.Get()));
  EXPECT_TRUE(listen.isVisible());
  StartCapture();
  Turn();
  EXPECT_FALSE(listen.isVisible());
  EXPECT_EQ(Find("Sound source").toolTip(), "Sound source: The usb");
  audio.Tell(AudioEvent::Kind::Lost, "The sound server went away & will not come back for long.");
  scheduler.RunPosted();
  Turn();
  const QWidget& notice = Find("Notice, click to dismiss");
  EXPECT_TRUE(notice.toolTip().startsWith("The sound server went away & will not come back"));
  EXPECT_EQ(Pixel(notice, {1, 4}), 0xFFFFD45E);
  program->notices.Raise(NoticeKind::Transmitter, "It transmits");
  Turn();
  EXPECT_EQ(Pixel(notice, {1, 4}), 0xFFC4161C);
  Reachable(true);
  program->rig.link.StartOmniRig({});
  scheduler.RunPosted();
  Turn();
  EXPECT_EQ(Pixel(Find("CAT configuration: linked"), {5, 5}), 0xFF2EA043);
}

TEST_F(KeyboardTest, AMenuStandsBelowItsButtonAndTheKeyboardGoesBackThere) {
  QtPrompts own;
  window.hide();
  own.SetOwner(&window);
  window.show();
  Activate(window);
  QWidget& file = Find("File menu");
  const QRect place = file.geometry();
  for (const bool byKeyboard : {true, false}) {
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, {300, 10});
    if (byKeyboard) QTest::keyClick(window.windowHandle(), Qt::Key_Shift);
    file.setFocus();
    own.Popup({place.left(), place.top(), place.width(), place.height()},
              {{"&One & Two && Three", false, true, "", [] {}, {}}},
              [this](const std::function<void()>&) { window.FocusScope(); });
    Turn();
    auto* menu = dynamic_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->pos(), file.mapToGlobal(QPoint(0, file.height())));
    EXPECT_EQ(menu->activeAction() != nullptr, byKeyboard);
    EXPECT_EQ(menu->actions().front()->text(), "&One && Two && Three");
    menu->hide();
    Turn();
    EXPECT_EQ(QApplication::focusWidget(), byKeyboard ? &file : &Find("Spectrum display"));
  }
}

TEST_F(KeyboardTest, SlidersRiseWithWhatTheyShow) {
  for (const auto& [name, control] : {std::pair{"Level of the spectrum", &form.Slider},
                                      {"Gain of the waterfall", &form.Slider2}}) {
    auto& slider = dynamic_cast<QSlider&>(Find(name));
    control->Set(100);
    Turn();
    EXPECT_TRUE(slider.value() == slider.minimum() && !slider.invertedAppearance());
    EXPECT_EQ(control->value, 100);  // showing it changes nothing
    for (const auto& [key, after] :
         {std::pair{Qt::Key_Up, 99}, {Qt::Key_PageUp, 89}, {Qt::Key_End, 1}, {Qt::Key_Down, 2}}) {
      QTest::keyClick(&slider, key);
      EXPECT_EQ(control->value, after) << name;
    }
  }
}

TEST_F(KeyboardTest, WhoTransmitsIsLitInOnePlace) {
  constexpr QRgb kRed = 0xFFC82020;
  constexpr QRgb kBlue = 0xFF1F62C4;
  const auto lit = [this](const char* name) { return Pixel(Find(name), {5, 5}); };
  // What the rig tells and whether TX is pressed, else RX.
  for (const auto& [told, pressed] :
       {std::pair{"RX", false}, {"RX", true}, {"TX", true}, {"TX", false}}) {
    form.lblTRXMode.caption = told;
    form.optTXRX[0].value = pressed;
    form.optTXRX[1].value = !pressed;
    Turn();
    const bool transmits = pressed || told[0] == 'T';
    EXPECT_EQ(lit("Transmit") == kRed, transmits) << told << pressed;
    EXPECT_EQ(lit("Receive") == kBlue, !transmits) << told << pressed;
  }
  // Without room for the buttons the label tells it.
  form.mnusettings[3].Click();
  form.Window.widthTwips = 5000;
  for (const auto& [told, colour] : {std::pair{"TX", kRed}, {"RX", kBlue}}) {
    form.lblTRXMode.caption = told;
    Turn();
    QWidget& state = Find(QString("State ") + told);
    EXPECT_EQ(Pixel(state, {5, 3}), colour);
    EXPECT_EQ(state.cursor().shape(), Qt::PointingHandCursor);
    EXPECT_FALSE(state.toolTip().contains("Link a transceiver"));
  }
  form.lblTRXMode.enabled = false;  // without a rig nothing receives
  Turn();
  const QWidget& state = Find("State RX");
  EXPECT_NE(Pixel(state, {5, 3}), kBlue);
  EXPECT_EQ(state.cursor().shape(), Qt::ArrowCursor);
  EXPECT_TRUE(state.toolTip().contains("Link a transceiver"));
}

TEST_F(KeyboardTest, TheSystemInformationIsReadAndCopiedByKeyboard) {
  SysInfoWindow dialog(program->sysInfoForm, &window);
  program->systemInfo.StartSysInfo();
  Activate(dialog);
  QWidget* text = QApplication::focusWidget();
  EXPECT_EQ(text, &velt::Find(dialog, "System information"));
  QTest::keyClick(text, Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
  QTest::keyClick(text, Qt::Key_C, Qt::ControlModifier);
  const QString report = ToQt(program->sysInfoForm.lblReport.caption.Get());
  EXPECT_EQ(QGuiApplication::clipboard()->text(), report);
  QGuiApplication::clipboard()->setText("");
  QTest::keyClick(text, Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), &velt::Find(dialog, "Copy All"));
  PressKey(Qt::Key_Space);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), report);
  PressKey(Qt::Key_Escape);
  EXPECT_FALSE(dialog.isVisible());
}

TEST(PressButtonLooks, ALongTextIsNotCutToAnotherOneAndThePressedIsMarked) {
  PressButton button(nullptr);
  QFont font = button.font();
  font.setPixelSize(11);
  button.setFont(font);
  button.setFixedSize(47, 16);
  const auto drawn = [&button](const char* text) {
    button.setText(text);
    return button.grab().toImage();
  };
  EXPECT_NE(drawn("14074.125"), drawn("24074.125"));
  EXPECT_NE(drawn("114074.125 kHz"), drawn("214074.125 kHz"));
  EXPECT_NE(drawn("14074.125"), drawn("14074.12"));
  const QColor mark = button.palette().color(QPalette::Highlight);
  EXPECT_NE(button.grab().toImage().pixelColor(20, 13), mark);
  button.setChecked(true);
  EXPECT_EQ(button.grab().toImage().pixelColor(20, 13), mark);
}

}  // namespace
}  // namespace velt

// The main window without a mouse and without looking: pop-ups opened by keys, and the texts that
// are always there.
#include <QMenu>

#include "adapters/qt/qt_prompts.h"
#include "ui/qt_text.h"
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
  form.lblFrequency.stale = true;
  Turn();
  EXPECT_EQ(Pixel(notice, {1, 4}), 0xFFC4161C);
  EXPECT_TRUE(notice.toolTip().startsWith("It transmits"));
  Find("Frequency RigOffLine (last known)");

  Reachable(true);
  program->rig.link.StartOmniRig({});
  scheduler.RunPosted();
  Turn();
  Find("Link to the rig: linked");
  Find("Lamp of the link: green");
  EXPECT_EQ(Pixel(Find("CAT configuration: linked"), {5, 5}), 0xFF2EA043);
}

TEST_F(KeyboardTest, AMenuStandsBelowItsButtonAndTheKeyboardGoesBackThere) {
  QtPrompts own;
  window.hide();
  own.SetOwner(&window);
  window.show();
  Turn();
  QApplication::setActiveWindow(&window);
  QWidget& file = Find("File menu");
  const QRect place = file.geometry();
  for (const bool byKeyboard : {true, false}) {
    if (byKeyboard) {
      QTest::keyClick(window.windowHandle(), Qt::Key_Shift);
    } else {
      QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, {300, 10});
    }
    file.setFocus();
    own.Popup({place.left(), place.top(), place.width(), place.height()},
              {{"&One", false, true, "", [] {}, {}}},
              [this](const std::function<void()>&) { window.FocusScope(); });
    Turn();
    auto* menu = dynamic_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->pos(), file.mapToGlobal(QPoint(0, file.height())));
    EXPECT_EQ(menu->activeAction() != nullptr, byKeyboard);
    menu->hide();
    Turn();
    EXPECT_EQ(QApplication::focusWidget(), byKeyboard ? &file : &Find("Spectrum display"));
  }
}

}  // namespace
}  // namespace velt

// The main window over its form and layout: every control that it shows, in both directions, found
// by its accessible name.
#include "ui/main_window.h"

#include <QPainter>

#include "ui/form_dialog.h"
#include "ui/window_fixture.h"

namespace velt {
namespace {

using MainWindowTest = WindowFixture;

TEST_F(MainWindowTest, EachChangeOfTheFormIsSeenInItsPlace) {
  const std::pair<const char*, std::function<void()>> rows[] = {
      {"Options menu", [&] { form.cmdOptions.caption = "O"; }},
      {"File menu", [&] { form.Image2.tag = "F"; }},
      {"CAT configuration", [&] { form.Image3.tag = "C"; }},
      {"Start or stop the spectrum analyser", [&] { form.imgStartStop.tag = "Stop"; }},
      {"Frequency RigOffLine", [&] { form.lblFrequency.caption = "7.100.00"; }},
      {"Frequency 7.100.00", [&] { form.lblFrequency.stale = true; }},
      {"Mode N/A", [&] { form.lblMode.caption = "USB"; }},
      {"Peak ", [&] { form.lblFreqDetect.caption = "6001Hz"; }},
      {"S-meter", [&] { form.Smeter.topTwips = -2000 * kTwipsPerPixel; }},
      {"Spectrum display", [&] { form.Scope.horizontalGrid = {}; }},
      {"Waterfall", [&] { form.chkSpecMode.value = 1; }},
      {"Frequency scale", [&] { form.lblScales[0].caption = "#"; }},
      {"Where modes are sent to", [&] { form.Label3.caption = "Velt Mode"; }},
      {"Message", [&] { form.lblMessage.caption = "Hello"; }},
  };
  form.lblMessage.visible = true;
  Turn();
  EXPECT_EQ(Find("Frequency scale").y(), form.picScales.place.Get().top);
  for (const auto& [name, change] : rows) {
    SCOPED_TRACE(name);
    const QRect place = Find(name).geometry();
    const QImage before = OnScreen(window);
    change();
    Turn();
    QImage after = OnScreen(window);
    EXPECT_NE(before.copy(place), after.copy(place));
    QPainter(&after).drawImage(place.topLeft(), before.copy(place));
    EXPECT_EQ(before, after) << "nothing else changes";
  }
}

TEST_F(MainWindowTest, ANoticeStaysOverANewPictureOfTheDisplay) {
  const QWidget& notice = Find("Notice, click to dismiss");
  form.lblNotice.visible = true;
  form.Scope.verticalGrid = {};
  Turn();
  raster = Raster(raster.Width(), raster.Height(), Colour::FromArgb(0xFFFF0000));
  form.Scope.frame = 1;
  Turn();
  EXPECT_EQ(Pixel(notice, {2, 2}), 0xFFFFD45E);
  EXPECT_EQ(Pixel(notice, {2, notice.height() + 2}), 0xFFFF0000);
}

// The frame of the platform that is tested on is two pixels wide.
TEST_F(MainWindowTest, ADialogStandsBesideItOrWhereItHidesLeastButNotTheTransmittersButtons) {
  struct Dialog : FormDialog {
    using FormDialog::FollowForm;
    using FormDialog::FormDialog;
  };
  for (const auto& [at, size, place] :
       {std::tuple{QPoint(100, 100), QSize(400, 300), QPoint(100, 268)},
        {QPoint(100, 600), QSize(400, 300), QPoint(100, 298)},
        {QPoint(100, 300), QSize(450, 700), QPoint(0, 98)}}) {
    window.move(at);
    Dialog dialog(program->aboutForm, program->aboutForm.Window, &window);
    dialog.setFixedSize(size);
    dialog.FollowForm();
    for (const bool visible : {true, false}) {
      program->aboutForm.Window.visible = visible;
      Turn();
    }
    EXPECT_EQ(dialog.pos(), place);
  }
}

TEST_F(MainWindowTest, WhatTheUserDoesReachesTheForm) {
  struct Row {
    const char* name;
    Event<>& event;
    Qt::Key key = Qt::Key_Space;
    Qt::KeyboardModifier modifier = Qt::NoModifier;
  };
  form.lblNotice.visible = true;
  Turn();
  const Row rows[] = {{"Options menu", form.cmdOptions.clicked},
                      {"File menu", form.Image2.clicked},
                      {"CAT configuration", form.Image3.clicked, Qt::Key_Return},
                      {"Start or stop the spectrum analyser", form.imgStartStop.clicked},
                      {"Frequency RigOffLine", form.lblFrequency.clicked, Qt::Key_Enter},
                      {"Mode N/A", form.lblMode.clicked},
                      {"State RX", form.lblTRXMode.clicked},
                      {"Waterfall", form.chkSpecMode.value.changed},
                      {"Level of the spectrum", form.Slider.value.changed, Qt::Key_Up},
                      {"Gain of the waterfall", form.Slider2.value.changed, Qt::Key_Up},
                      {"Notice, click to dismiss", form.lblNotice.clicked},
                      {"Spectrum display", form.cmdOptions.clicked, Qt::Key_O, Qt::AltModifier},
                      {"Transmit", form.Image2.clicked, Qt::Key_F, Qt::AltModifier},
                      {"Receive", form.Image3.clicked, Qt::Key_C, Qt::AltModifier},
                      {"Spectrum display", form.mnumanual.clicked, Qt::Key_F1},
                      {"Transmit", form.mnurunzoka.clicked, Qt::Key_F11},
                      {"File menu", form.mnuclosezoka.clicked, Qt::Key_F12}};
  for (const Row& row : rows) {
    int times = 0;
    const Connection listening = row.event.Listen([&times] { ++times; });
    QWidget& widget = Find(row.name);
    EXPECT_NE(widget.focusPolicy() & Qt::TabFocus, 0) << row.name;
    widget.setFocus();
    QTest::keyClick(&widget, row.key, row.modifier);
    if (row.modifier == Qt::AltModifier) {
      EXPECT_EQ(times, 1) << "the next key would still tune: " << row.name;
    }
    EXPECT_TRUE(QTest::qWaitFor([&times] { return times == 1; }, 2000)) << row.name << row.key;
  }
  for (const auto& [index, name] : {std::pair{0, "Transmit"}, {1, "Receive"}}) {
    Find(name).setFocus();
    for (const auto key : {Qt::Key_Space, Qt::Key_Return}) {
      EXPECT_EQ(Told(form.optTXRX[index].mouseDown, [key] { PressKey(key); }), 1) << name;
    }
  }
  window.FocusScope();
  EXPECT_EQ(QApplication::focusWidget(), &Find("Spectrum display"));
  int movedTo = 0;
  const Connection moving = form.Scope.mouseMove.Listen([&movedTo](int x) { movedTo = x; });
  QTest::mouseMove(&Find("Spectrum display"), {100, 20});
  EXPECT_TRUE(QTest::qWaitFor([&movedTo] { return movedTo == 100; }, 2000));
}

TEST_F(MainWindowTest, TheWindowItselfFollowsItsFrameAndTellsIt) {
  WindowFrame& frame = form.Window;
  EXPECT_EQ(window.maximumSize(), QSize(559, 164));
  frame.sizeable = true;
  frame.least = WindowSize{3000, 1500};
  frame.most = WindowSize{13140, 3000};
  frame.caption = "VELT-SA - Rig X";
  frame.topMost = true;
  frame.faceColour = 0xFF203040;
  Turn();
  EXPECT_EQ(window.windowTitle(), "VELT-SA - Rig X");
  EXPECT_TRUE(window.minimumSize() == QSize(200, 100) && window.maximumSize() == QSize(876, 200));
  EXPECT_TRUE(window.windowHandle()->flags() & Qt::WindowStaysOnTopHint);
  EXPECT_EQ(OnScreen(window).pixel(1, 1), 0xFF203040);
  frame.widthTwips = 6000;
  frame.heightTwips = 1800;
  Turn();
  EXPECT_EQ(window.size(), QSize(400, 120));

  window.resize(450, 130);  // by the user
  window.move(30, 40);
  // Not before the window has the size that the form asked for last.
  EXPECT_TRUE(QTest::qWaitFor([&] { return frame.widthTwips == 450 * kTwipsPerPixel; }, 2000));
  EXPECT_EQ(frame.heightTwips, 130 * kTwipsPerPixel);
  EXPECT_TRUE(frame.leftTwips == 30 * kTwipsPerPixel && frame.topTwips == 40 * kTwipsPerPixel);
  // Where the window fits it stood with its frame.
  window.hide();
  const QSize screen = window.screen()->availableSize();
  const QPoint edge(screen.width() - 450, screen.height() - 130);
  frame.placed = true;
  frame.leftTwips = edge.x() * kTwipsPerPixel;
  frame.topTwips = edge.y() * kTwipsPerPixel;
  Turn();
  EXPECT_EQ(window.pos(), edge);
  window.show();
  window.showMinimized();
  EXPECT_TRUE(frame.minimised);
  painted = 0;
  form.Scope.frame = 1;
  Turn();
  EXPECT_EQ(painted, 0);
  window.showNormal();
  Turn();
  EXPECT_FALSE(frame.minimised);
  EXPECT_GT(painted, 0);

  bool stays = true;
  const Connection closing = window.closing.Listen([&](bool& cancel) { cancel = stays; });
  EXPECT_FALSE(window.close());
  stays = false;
  EXPECT_TRUE(window.close());
}

}  // namespace
}  // namespace velt

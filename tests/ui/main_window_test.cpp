// The main window over its form and layout: every control that it shows, in both directions, found
// by its accessible name.
#include "ui/main_window.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QTest>

#include "support/doubles.h"
#include "ui/on_screen.h"
#include "ui/turn.h"

namespace velt {
namespace {

struct MainWindowTest : testing::Test, ProgramFixture {
  MainWindowTest() {
    program->layout.Form_Resize();
    raster = Raster(form.Scope.scaleWidth, form.Scope.scaleHeight);
    form.imgStartStop.toolTip = "Start";
    window.show();
    Turn();
    QApplication::setActiveWindow(&window);
  }
  // The widget of that accessible name; what follows it is what the widget shows.
  QWidget& Find(const QString& name) {
    for (QWidget* widget : window.findChildren<QWidget*>()) {
      const QString spoken = widget->accessibleName();
      if (spoken == name || spoken.startsWith(name + ": ")) return *widget;
    }
    ADD_FAILURE() << "no " << name.toStdString();
    return window;
  }

  Main& form = program->form;
  Raster raster;
  int painted = 0;
  MainWindow window{form, [this]() -> const Raster& {
                      ++painted;
                      return raster;
                    }};
};

// Around every pixel that differs.
QRect Difference(const QImage& a, const QImage& b) {
  if (a.size() != b.size()) return a.rect();
  QRect difference;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      if (a.pixel(x, y) != b.pixel(x, y)) difference |= QRect(x, y, 1, 1);
    }
  }
  return difference;
}

TEST(OnScreen, AWindowIsBroughtBackWhollyOntoTheNearestScreen) {
  const QRect left(0, 0, 1280, 900), right(1280, 100, 800, 600);
  struct Row {
    QPoint from, to;
  };
  for (const Row& row : {Row{{100, 100}, {100, 100}},
                         {{1262, 100}, {1280, 100}},  // 18 pixels show
                         {{700, -40}, {700, 0}},
                         {{4000, 357}, {1521, 357}},
                         {{143165576, 143165576}, {1521, 504}},
                         {{-5000, 300}, {0, 300}}}) {
    EXPECT_EQ(BroughtOnScreen({row.from, QSize(559, 196)}, {left, right}).topLeft(), row.to)
        << row.from.x();
  }
  EXPECT_EQ(BroughtOnScreen({5000, 0, 2000, 50}, {left}).topLeft(), QPoint(0, 0));
  EXPECT_EQ(BroughtOnScreen({5000, 0, 200, 50}, {}).topLeft(), QPoint(5000, 0));
}

TEST_F(MainWindowTest, EachChangeOfTheFormIsSeenInItsPlace) {
  struct Row {
    const char* name;
    std::function<void()> change;
    QRgb seen = 0;  // somewhere in it afterwards
  };
  constexpr QRgb kGreen = 0xFF00FF00;
  std::vector<Row> rows{
      {"Options menu", [&] { form.cmdOptions.caption = "O"; }},
      {"File menu", [&] { form.Image2.tag = "F"; }},
      {"CAT configuration", [&] { form.Image3.tag = "C"; }},
      {"Start or stop the spectrum analyzer", [&] { form.imgStartStop.tag = "Stop"; }, 0xFFCF3A32},
      {"Transceiver frequency", [&] { form.lblFrequency.caption = "7.100.00"; }, 0xFF000000},
      {"Transceiver frequency", [&] { form.lblFrequency.stale = true; }},
      {"Modulation mode", [&] { form.lblMode.caption = "USB"; }},
      {"Modulation mode", [&] { form.lblMode.stale = true; }},
      {"Transmit or receive", [&] { form.lblTRXMode.caption = "TX"; }, 0xFFC82020},
      {"Transmit or receive", [&] { form.lblTRXMode.stale = true; }},
      {"Transmit", [&] { form.optTXRX[0].value = true; }},
      {"Receive", [&] { form.optTXRX[1].value = false; }},
      {"Dominant frequency", [&] { form.lblFreqDetect.caption = "6001Hz"; }},
      {"Waterfall", [&] { form.chkSpecMode.value = 1; }},
      {"Level of the spectrum", [&] { form.Slider.Set(90); }},
      {"Gain of the waterfall", [&] { form.Slider2.Set(5); }},
      {"S-meter", [&] { form.Smeter.topTwips = -40 * kTwipsPerPixel; }, 0xFF35C45A},
      {"Spectrum display",
       [&] {
         raster.SetPixel(5, 5, Colour::FromArgb(kGreen));
         form.Scope.frame = 7;
       },
       kGreen},
      {"Spectrum display", [&] { form.Scope.gridColour = 0xFF123456; }, 0xFF123456},
      {"Spectrum display", [&] { form.Scope.verticalGrid = {}; }},
      {"Spectrum display", [&] { form.Scope.horizontalGrid = {}; }},
      {"Spectrum display",
       [&] {
         form.Scope.markers = {{9, 0, 9, 50}};
         form.Scope.markerColour = 0xFF654321;
       },
       0xFF654321},
      {"Spectrum display", [&] { form.Scope.markerColour = 0xFF224466; }, 0xFF224466},
      {"Where modes are sent to", [&] { form.Label3.caption = "Velt Mode"; }},
      {"Message",
       [&] {
         form.lblMessage.caption = "Hello";
         form.lblMessage.visible = true;
       }},
      {"Notice, click to dismiss",
       [&] {
         form.lblNotice.caption = "Sound lost";
         form.lblNotice.visible = true;
       },
       0xFFFFD45E},
  };
  for (auto& [index, label] : form.lblScales) {
    rows.push_back({"Frequency scale", [l = label.get()] { l->caption = "#"; }});
    rows.push_back({"Frequency scale", [l = label.get()] { l->visible = false; }});
  }
  const Rectangle scales = form.picScales.place;
  EXPECT_TRUE(Find("Frequency scale")
                  .geometry()
                  .contains(QRect(scales.left, scales.top, scales.width, scales.height)));
  for (size_t i = 0; i < rows.size(); ++i) {
    const Row& row = rows[i];
    const QWidget& widget = Find(row.name);
    const QImage before = OnScreen(window);
    row.change();
    Turn();
    const QImage after = OnScreen(window);
    const QRect seen = Difference(before, after);
    EXPECT_TRUE(!seen.isEmpty() && widget.geometry().contains(seen)) << i << " " << row.name;
    if (row.seen == 0) continue;
    bool found = false;
    for (int y = seen.top(); y <= seen.bottom(); ++y) {
      for (int x = seen.left(); x <= seen.right(); ++x) {
        found = found || after.pixel(x, y) == row.seen;
      }
    }
    EXPECT_TRUE(found) << i << " " << row.name;
  }
}

TEST_F(MainWindowTest, ANoticeStaysOverANewPictureOfTheDisplay) {
  constexpr QRgb kRed = 0xFFFF0000;
  const QRect notice = Find("Notice, click to dismiss").geometry();
  const QPoint in = notice.topLeft() + QPoint(2, 2);
  const QPoint below = in + QPoint(0, notice.height());
  for (const bool shown : {false, true, false}) {
    form.lblNotice.visible = shown;
    Turn();
    raster = Raster(raster.Width(), raster.Height(), Colour::FromArgb(kRed + form.Scope.frame));
    form.Scope.frame = form.Scope.frame + 1;
    form.Scope.verticalGrid = {};
    Turn();
    const QImage seen = OnScreen(window);
    EXPECT_EQ(seen.pixel(below), raster.Pixels()[0]);
    EXPECT_EQ(seen.pixel(in), shown ? 0xFFFFD45E : raster.Pixels()[0]);
  }
}

TEST_F(MainWindowTest, WhatTheUserDoesReachesTheForm) {
  std::string heard;

  const auto hear = [&](Event<>& event, const char* what) {
    connections += event.Listen([&heard, what] { heard = what; });
  };
  struct Row {
    const char* name;
    Event<>& event;
    Qt::Key key = Qt::Key_Space;
  };
  form.lblNotice.visible = true;
  Turn();
  const Row rows[] = {{"Options menu", form.cmdOptions.clicked},
                      {"File menu", form.Image2.clicked},
                      {"CAT configuration", form.Image3.clicked},
                      {"Start or stop the spectrum analyzer", form.imgStartStop.clicked},
                      {"Transceiver frequency", form.lblFrequency.clicked},
                      {"Modulation mode", form.lblMode.clicked},
                      {"Transmit or receive", form.lblTRXMode.clicked},
                      {"Waterfall", form.chkSpecMode.value.changed},
                      {"Level of the spectrum", form.Slider.value.changed, Qt::Key_Up},
                      {"Gain of the waterfall", form.Slider2.value.changed, Qt::Key_Up},
                      {"Notice, click to dismiss", form.lblNotice.clicked}};
  for (const Row& row : rows) hear(row.event, row.name);
  for (auto& [index, option] : form.optTXRX) {
    connections += option->mouseDown.Listen([&heard, i = index](int mouseButton) {
      heard = std::to_string(i) + " pressed " + std::to_string(mouseButton);
    });
  }
  for (const Row& row : rows) {
    QWidget& widget = Find(row.name);
    EXPECT_NE(widget.focusPolicy() & Qt::TabFocus, 0) << row.name;
    EXPECT_FALSE(widget.toolTip().isEmpty()) << row.name;
    QTest::keyClick(&widget, row.key);
    EXPECT_EQ(heard, row.name);
  }
  QTest::mousePress(&Find("Transmit"), Qt::LeftButton);
  EXPECT_EQ(heard, "0 pressed 1");
  QTest::keyClick(&Find("Receive"), Qt::Key_Space);
  EXPECT_EQ(heard, "1 pressed 1");
  for (const char* name : {"Dominant frequency", "Where modes are sent to", "Message"}) {
    EXPECT_EQ(Find(name).cursor().shape(), Qt::ArrowCursor) << name;  // nothing to click
  }
  window.FocusScope();
  EXPECT_EQ(QApplication::focusWidget(), &Find("Spectrum display"));
}

TEST_F(MainWindowTest, TheWindowItselfFollowsItsFrameAndTellsIt) {
  WindowFrame& frame = form.Window;
  EXPECT_EQ(window.minimumSize(), QSize(559, 164));
  EXPECT_EQ(window.maximumSize(), QSize(559, 164));
  frame.sizeable = true;
  frame.least = WindowSize{3000, 1500};
  frame.most = WindowSize{13140, 3000};
  frame.caption = "VELT-SA - Rig X";
  frame.topMost = true;
  frame.faceColour = 0xFF203040;
  Turn();
  EXPECT_EQ(window.windowTitle(), "VELT-SA - Rig X");
  EXPECT_EQ(window.minimumSize(), QSize(200, 100));
  EXPECT_EQ(window.maximumSize(), QSize(876, 200));
  EXPECT_TRUE(window.windowHandle()->flags() & Qt::WindowStaysOnTopHint);
  EXPECT_EQ(OnScreen(window).pixel(1, 1), 0xFF203040);
  frame.faceColour = 0;
  frame.widthTwips = 6000;
  frame.heightTwips = 1800;
  Turn();
  EXPECT_EQ(window.size(), QSize(400, 120));
  EXPECT_EQ(OnScreen(window).pixel(1, 1), QApplication::palette().color(QPalette::Window).rgb());

  window.resize(450, 130);  // by the user
  EXPECT_EQ(frame.widthTwips, 450 * kTwipsPerPixel);
  EXPECT_EQ(frame.heightTwips, 130 * kTwipsPerPixel);
  window.move(30, 40);
  EXPECT_EQ(frame.leftTwips, 30 * kTwipsPerPixel);
  EXPECT_EQ(frame.topTwips, 40 * kTwipsPerPixel);
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

TEST(MainWindow, StandsWhereItStoodLast) {
  Main form;
  form.Window.leftTwips = 300;
  form.Window.topTwips = 600;
  form.Window.placed = true;
  form.Window.topMost = true;
  const Raster raster;
  MainWindow window(form, [&raster]() -> const Raster& { return raster; });
  EXPECT_EQ(window.pos(), QPoint(20, 40));
  EXPECT_TRUE(window.windowFlags() & Qt::WindowStaysOnTopHint);
}

}  // namespace
}  // namespace velt

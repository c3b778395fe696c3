// How the main window's own widgets look and move, pixel by pixel, at several factors.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPainter>
#include <QSlider>
#include <QStyleOptionSlider>
#include <QTest>
#include <QWheelEvent>
#include <cmath>

#include "support/doubles.h"
#include "ui/canvas.h"
#include "ui/click_label.h"
#include "ui/main_window.h"
#include "ui/meter_widget.h"
#include "ui/press_button.h"
#include "ui/scope_widget.h"
#include "ui/turn.h"

namespace velt {
namespace {

constexpr QRgb kNavy = 0xFF001764;
constexpr QRgb kWhite = 0xFFFFFFFF;

// A widget's picture on a device with that factor, where it stands at `x` in its window.
QImage Shown(QWidget& widget, double factor, int x = 0) {
  const QSize size(static_cast<int>(std::ceil((x + widget.width()) * factor)) + 1,
                   static_cast<int>(std::ceil(widget.height() * factor)) + 1);
  QImage image(size, QImage::Format_RGB32);
  image.fill(0xFFC0C0C0);
  image.setDevicePixelRatio(factor);
  QPainter painter(&image);
  widget.render(&painter, QPoint(x, 0));
  return image;
}

// The widths of the runs of one colour in a row.
std::vector<int> Runs(const QImage& image, int y, QRgb colour) {
  std::vector<int> runs;
  for (int x = 0; x < image.width(); ++x) {
    if (image.pixel(x, y) != colour) continue;
    if (x == 0 || image.pixel(x - 1, y) != colour) runs.push_back(0);
    ++runs.back();
  }
  return runs;
}

TEST(Looks, LinesAreEvenAndTheRingIsOnTheEdgeAtEveryFactor) {
  struct Row {
    double factor;
    int pen;
  };
  for (const Row& row : {Row{1, 1}, {1.25, 1}, {1.5, 2}, {1.75, 2}, {2, 2}, {3, 3}}) {
    for (const int at : {0, 19}) {
      Form form;
      ScopeControl control(form);
      const Raster picture(101, 60, Colour::FromArgb(kNavy));
      ScopeWidget scope([&picture]() -> const Raster& { return picture; }, nullptr);
      scope.resize(101, 60);
      control.gridColour = 0xFFFF00FF;
      control.verticalGrid = {{10, 0, 10, 59}, {23, 0, 23, 59}, {36, 0, 36, 59}, {49, 0, 49, 59}};
      control.markerColour = 0xFFFF0000;
      control.markers = {{80, 0, 80, 59}};
      scope.Follow(control);
      const QImage seen = Shown(scope, row.factor, at);
      // 35 % of the line's colour over the picture's.
      const QRgb line = qRgb(0x59, 0x0F, 0x9A);
      const int y = seen.height() / 2;
      EXPECT_EQ(Runs(seen, y, line), std::vector<int>(4, row.pen)) << row.factor << " at " << at;
      EXPECT_EQ(Runs(seen, y, 0xFFFF0000), std::vector<int>(1, row.pen)) << row.factor;
      // Paler than the picture on both sides of the marker.
      const int marker = static_cast<int>((80 + at) * row.factor + row.pen / 2.0);
      for (const int beside : {-row.pen, row.pen}) {
        EXPECT_GT(qGray(seen.pixel(marker + beside, y)), 140) << row.factor;
      }
      // Its cap is wider than the line.
      const auto widths = Runs(seen, 3 * row.pen, 0xFFFF0000);
      EXPECT_TRUE(widths.size() == 1 && widths[0] > 3 * row.pen) << row.factor;
    }
  }
  for (const QSize size : {QSize(40, 20), QSize(60, 30), QSize(70, 35), QSize(80, 40)}) {
    QImage image(size, QImage::Format_RGB32);
    Canvas canvas(reinterpret_cast<uint32_t*>(image.bits()), image.bytesPerLine() / 4, size,
                  {40, 20});
    canvas.Draw(Raster(40, 20, Colour::FromArgb(kNavy)));
    canvas.Frame(kWhite);
    const int pen = canvas.Pen();
    for (int y = 0; y < size.height(); ++y) {
      for (int x = 0; x < size.width(); ++x) {
        const bool edge = x < pen || y < pen || x >= size.width() - pen || y >= size.height() - pen;
        ASSERT_EQ(image.pixel(x, y), edge ? kWhite : kNavy) << x << "," << y;
      }
    }
  }
}

TEST(Looks, TheMeterIsCyanUpToS9AndAmberAbove) {
  constexpr QRgb kCyan = 0xFF2CC8EA;
  constexpr QRgb kAmber = 0xFFF5A623;
  for (const double factor : {1.0, 1.5, 2.0}) {
    MeterWidget meter(nullptr);
    meter.resize(26, 98);
    struct Row {
      int32_t twips;
      double cyan, amber;  // of the 96 pixels between the frame's ends
    };
    for (const Row& row :
         {Row{0, 0, 0}, {25000, 48, 0}, {200000, 72, 0}, {800000, 72, 16}, {90000000, 72, 24}}) {
      meter.SetLevel(row.twips);
      const QImage seen = Shown(meter, factor);
      int cyan = 0, amber = 0;
      for (int y = 0; y < seen.height(); ++y) {
        cyan += seen.pixel(qRound(5 * factor), y) == kCyan ? 1 : 0;
        amber += seen.pixel(qRound(5 * factor), y) == kAmber ? 1 : 0;
      }
      EXPECT_NEAR(cyan, row.cyan * factor, 1) << row.twips << " at " << factor;
      EXPECT_NEAR(amber, row.amber * factor, 1) << row.twips << " at " << factor;
    }
  }
}

struct LooksTest : testing::Test, ProgramFixture {
  LooksTest() {
    program->layout.Form_Resize();
    window.show();
    Turn();
    QApplication::setActiveWindow(&window);
  }
  template <class W>
  W& Find(const QString& name) {
    for (W* widget : window.findChildren<W*>()) {
      if (widget->accessibleName().startsWith(name)) return *widget;
    }
    throw std::runtime_error("no " + name.toStdString());
  }
  Main& form = program->form;
  Raster raster;
  MainWindow window{form, [this]() -> const Raster& { return raster; }};
};

TEST_F(LooksTest, SlidersRiseWithWhatTheyShow) {
  for (const auto& [name, control] :
       {std::pair{"Level of the spectrum", &form.Slider}, {"Gain of the", &form.Slider2}}) {
    auto& slider = Find<QSlider>(name);
    EXPECT_TRUE(slider.toolTip().contains("up makes"));
    const auto thumb = [&] {
      QStyleOptionSlider option;
      option.initFrom(&slider);
      option.orientation = Qt::Vertical;
      option.minimum = slider.minimum();
      option.maximum = slider.maximum();
      option.sliderPosition = slider.sliderPosition();
      option.upsideDown = !slider.invertedAppearance();
      return slider.style()
          ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider)
          .center()
          .y();
    };
    control->Set(1);
    Turn();
    const int tallest = thumb();
    control->Set(100);
    Turn();
    EXPECT_GT(thumb(), tallest + slider.height() / 2);
    EXPECT_EQ(control->value, 100);  // showing it changes nothing
    struct Row {
      std::function<void()> act;
      int32_t after;
    };
    const auto wheel = [&](int angle) {
      QWheelEvent event({5, 5}, {5, 5}, {}, {0, angle}, {}, {}, Qt::NoScrollPhase, false);
      QApplication::sendEvent(&slider, &event);
    };
    for (const Row& row : {Row{[&] { QTest::keyClick(&slider, Qt::Key_Up); }, 99},
                           {[&] { QTest::keyClick(&slider, Qt::Key_Down); }, 100},
                           {[&] { QTest::keyClick(&slider, Qt::Key_PageUp); }, 90},
                           {[&] { QTest::keyClick(&slider, Qt::Key_Home); }, 100},
                           {[&] { QTest::keyClick(&slider, Qt::Key_End); }, 1},
                           {[&] { wheel(-120); }, 4},
                           {[&] { wheel(120); }, 1}}) {
      row.act();
      EXPECT_EQ(control->value, row.after) << name;
    }
  }
}

TEST_F(LooksTest, WhoTransmitsIsLitInOnePlace) {
  constexpr QRgb kRed = 0xFFC82020;
  constexpr QRgb kBlue = 0xFF1F62C4;
  auto& transmit = Find<PressButton>("Transmit");
  auto& receive = Find<PressButton>("Receive");
  auto& state = Find<ClickLabel>("State ");
  struct Row {
    const char* told;
    bool pressed;  // TX, else RX
    QRgb transmit, receive;
  };
  for (const QRgb face : {0xFFF0F0F0, 0xFF282C30}) {
    form.Window.faceColour = face;
    for (const Row& row : {Row{"RX", false, 0, kBlue},
                           {"TX", true, kRed, 0},
                           {"TX", false, kRed, 0},  // keyed by somebody else
                           {"RX", true, kRed, 0}}) {
      form.lblTRXMode.caption = row.told;
      form.optTXRX[0].value = row.pressed;
      form.optTXRX[1].value = !row.pressed;
      Turn();
      const auto lit = [](QWidget& button) { return Shown(button, 1).pixel(5, 5); };
      for (const QRgb light : {kRed, kBlue}) {
        EXPECT_EQ(lit(transmit) == light, row.transmit == light) << row.told << row.pressed;
        EXPECT_EQ(lit(receive) == light, row.receive == light) << row.told << row.pressed;
      }
      EXPECT_FALSE(state.isVisible());
    }
  }
  // Without room for the buttons the label tells it.
  form.mnusettings[3].Click();
  form.Window.widthTwips = 5000;
  form.lblTRXMode.caption = "RX";
  Turn();
  EXPECT_TRUE(state.isVisible() && !transmit.isVisible() && !receive.isVisible());
  EXPECT_EQ(Shown(state, 1).pixel(5, 3), kBlue);
  form.lblTRXMode.enabled = false;  // without a rig nothing receives
  Turn();
  EXPECT_NE(Shown(state, 1).pixel(5, 3), kBlue);
}

TEST_F(LooksTest, OnlyAStaleTextIsPaleAndADisabledOneTellsWhatWouldEnableIt) {
  const auto darkest = [](QWidget& widget) {
    const QImage seen = Shown(widget, 1);
    int least = 255;
    for (int y = 0; y < seen.height(); ++y) {
      for (int x = 0; x < seen.width(); ++x) least = std::min(least, qGray(seen.pixel(x, y)));
    }
    return least;
  };
  form.mnusettings[3].Click();
  form.Window.widthTwips = 5000;
  for (const auto& [name, label, how] :
       {std::tuple{"Mode ", &form.lblMode, "Start the spectrum analyser"},
        {"State ", &form.lblTRXMode, "Link a transceiver"}}) {
    label->caption = "OFF";  // a text without a colour of its own
    label->enabled = true;
    Turn();
    auto& widget = Find<ClickLabel>(name);
    EXPECT_EQ(widget.cursor().shape(), Qt::PointingHandCursor);
    EXPECT_FALSE(widget.toolTip().contains(how));
    label->enabled = false;
    Turn();
    EXPECT_EQ(widget.cursor().shape(), Qt::ArrowCursor);
    EXPECT_TRUE(widget.toolTip().contains(how)) << widget.toolTip().toStdString();
    EXPECT_LT(darkest(widget), 60) << name;
    label->stale = true;
    Turn();
    EXPECT_GT(darkest(widget), 120) << name;
  }
}

}  // namespace
}  // namespace velt

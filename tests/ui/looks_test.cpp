// How the main window's own widgets look and move.
#include <QSlider>

#include "ui/window_fixture.h"

namespace velt {
namespace {

using LooksTest = WindowFixture;

TEST_F(LooksTest, SlidersRiseWithWhatTheyShow) {
  for (const auto& [name, control] : {std::pair{"Level of the spectrum", &form.Slider},
                                      {"Gain of the waterfall", &form.Slider2}}) {
    auto& slider = Find<QSlider>(name);
    control->Set(100);
    Turn();
    EXPECT_EQ(slider.value(), slider.minimum());
    EXPECT_FALSE(slider.invertedAppearance());
    EXPECT_EQ(control->value, 100);  // showing it changes nothing
    for (const auto& [key, after] :
         {std::pair{Qt::Key_Up, 99}, {Qt::Key_PageUp, 89}, {Qt::Key_End, 1}, {Qt::Key_Down, 2}}) {
      QTest::keyClick(&slider, key);
      EXPECT_EQ(control->value, after) << name;
    }
  }
}

TEST_F(LooksTest, WhoTransmitsIsLitInOnePlace) {
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

}  // namespace
}  // namespace velt

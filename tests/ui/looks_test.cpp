// How the main window's own widgets look and move.
#include <QSlider>

#include "ui/press_button.h"
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
  struct Row {
    const char* told;
    bool pressed;  // TX, else RX
    bool transmits;
  };
  for (const Row& row : {Row{"RX", false, false},
                         {"RX", true, true},
                         {"TX", true, true},
                         {"TX", false, true}}) {  // keyed by somebody else
    form.lblTRXMode.caption = row.told;
    form.optTXRX[0].value = row.pressed;
    form.optTXRX[1].value = !row.pressed;
    Turn();
    EXPECT_EQ(lit("Transmit") == kRed, row.transmits) << row.told << row.pressed;
    EXPECT_EQ(lit("Receive") == kBlue, !row.transmits) << row.told << row.pressed;
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
  for (const char* rest : {"4074.125", "14074.125 kHz"}) {
    const std::string first = std::string("1") + rest;
    const std::string second = std::string("2") + rest;
    EXPECT_NE(drawn(first.c_str()), drawn(second.c_str())) << rest;
  }
  EXPECT_NE(drawn("14074.125"), drawn("14074.12"));
  const QColor mark = button.palette().color(QPalette::Highlight);
  EXPECT_NE(button.grab().toImage().pixelColor(20, 13), mark);
  button.setChecked(true);
  EXPECT_EQ(button.grab().toImage().pixelColor(20, 13), mark);
}

}  // namespace
}  // namespace velt

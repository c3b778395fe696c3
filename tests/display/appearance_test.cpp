// What of the window's looks is decided below the widgets.
#include <gtest/gtest.h>

#include <cmath>

#include "spectrum/s_meter.h"
#include "support/doubles.h"

namespace velt {
namespace {

TEST(SMeter, TwiceTheLevelIsOneUnitAndTheScaleHasTwelve) {
  struct Row {
    int32_t twips;
    double units;
    int bar;  // of a frame 96 pixels high
  };
  for (const Row& row : {Row{-5, 0, 0},
                         {0, 0, 0},
                         {390, 0, 0},
                         {3125, 3, 24},
                         {25000, 6, 48},
                         {200000, 9, 72},
                         {400000, 10, 80},
                         {1600000, 12, 96},
                         {2147483647, 22.390, 96}}) {
    EXPECT_NEAR(SUnits(row.twips), row.units, 0.001) << row.twips;
    EXPECT_EQ(SMeterBar(row.twips, 96), row.bar) << row.twips;
  }
  EXPECT_EQ(SMeterBar(200000, 0), 0);
}

TEST(SMeter, OrdinarySoundIsAroundTheMiddleAtTheDefaultSensitivity) {
  struct Row {
    double decibels;
    double least, most;
  };
  for (const Row& row : {Row{0, 9, 10}, {-20, 5.5, 6.5}, {-26, 4.5, 5.5}, {-46, 1.2, 2.2}}) {
    ProgramFixture f;
    f.Start();
    for (size_t i = 0; i < kBlockSamples; ++i) {
      f.audio.samples[i] = static_cast<int16_t>(
          32767 * std::pow(10, row.decibels / 20) *
          std::sin(2 * 3.14159265358979 * 1500 * static_cast<double>(i) / 44100));
    }
    f.StartCapture();
    f.scheduler.Advance(Milliseconds(60));
    const double units = SUnits(-f.Form().Smeter.topTwips);
    EXPECT_TRUE(units > row.least && units < row.most) << row.decibels << " dB: S" << units;
  }
}

TEST(Graticule, NoLevelLinesLieAcrossTheWaterfall) {
  ProgramFixture f;
  f.Start();
  for (const bool waterfall : {true, false}) {
    f.Form().chkSpecMode.UserPick(waterfall);
    for (const ScopeLine& line : f.Form().Scope.horizontalGrid.Get()) {
      EXPECT_EQ(line.visible, !waterfall);
    }
    for (const ScopeLine& line : f.Form().Scope.verticalGrid.Get()) EXPECT_TRUE(line.visible);
  }
}

TEST(Capture, ThePeakOfASoundThatIsOverIsStale) {
  ProgramFixture f;
  f.Start();
  f.audio.samples[0] = 10000;
  f.StartCapture();
  f.scheduler.Advance(Milliseconds(60));
  EXPECT_FALSE(f.Form().lblFreqDetect.stale);
  f.audio.Tell(AudioEvent::Kind::Lost, "Unplugged.");
  f.scheduler.RunPosted();
  EXPECT_TRUE(f.Form().lblFreqDetect.stale);
  f.audio.Tell(AudioEvent::Kind::Returned, "usb");
  f.scheduler.Advance(Milliseconds(60));
  EXPECT_FALSE(f.Form().lblFreqDetect.stale);
}

TEST(WindowScale, IsChosenInTheMenuToldAndKept) {
  struct Row {
    const char* stored;
    int32_t shown;
  };
  for (const Row& row : {Row{"", 100}, {"175", 175}, {"130", 100}, {"1e2", 100}, {"200 %", 100}}) {
    ProgramFixture f;
    if (*row.stored != '\0') f.store.Save("Window", "Scale", row.stored);
    f.Start();
    f.Form().cmdOptions.Click();
    EXPECT_TRUE(f.prompts.Choose("150 %"));
    EXPECT_EQ(f.prompts.told.size(), 1U);
    EXPECT_NE(f.prompts.told.at(0).text.find("150 % from its next start"), std::string::npos);
    for (auto& [percent, item] : f.Form().mnuscales) EXPECT_EQ(item->checked, percent == 150);
    f.Form().mnuscales[150].Click();
    f.Form().mnuscales[row.shown].Click();  // back to what is shown: nothing will change
    EXPECT_EQ(f.prompts.told.size(), 1U) << row.stored;
    EXPECT_TRUE(f.Form().mnuscales[row.shown].checked) << row.stored;
    f.Form().mnuscales[200].Click();
    f.Close();
    EXPECT_EQ(f.store.Get("Window", "Scale"), "200");
  }
}

}  // namespace
}  // namespace velt

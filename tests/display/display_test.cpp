#include <gtest/gtest.h>

#include "spectrum/s_meter.h"
#include "support/doubles.h"

namespace velt {
namespace {

struct DisplayTest : testing::Test, ProgramFixture {
  Main& form = program->form;
  AnalysisTick& tick = program->display.tick;
  const AnalysisSettings& analysis = program->display.options.analysis;

  DisplayTest() { Start(); }
};

TEST_F(DisplayTest, TheRigsFrequencyAndTheEnginesPassbandReachTheDisplay) {
  Rig& rig = program->rig;
  rig.state.RealRigFrequency = 14074000;
  rig.engine.passbandLow = 7000;
  rig.engine.passbandHigh = 9000;
  form.Scope.scaleWidth = 1000;
  form.Scope.scaleHeight = 20;
  form.mnuzokamodes[69].Click();
  audio.open = true;
  audio.samples[0] = 10000;  // every bin alike, so the last column is the peak
  tick.Timer1_Timer();
  EXPECT_TRUE(form.lblFreqDetect.caption.Get().starts_with("1407"));
  // 1000 / 11500 of the edge less 5760, and for the upper one column more.
  audio.samples[0] = 0;
  tick.Timer1_Timer();
  const auto row = tick.Shown().Row(0);
  for (const auto& [column, inside] :
       {std::pair{107, false}, {108, true}, {283, true}, {284, false}}) {
    EXPECT_EQ(row[static_cast<size_t>(column)] == analysis.passband.Argb(), inside) << column;
  }
}

TEST_F(DisplayTest, OptionsFollowMenusSlidersAndCheckBox) {
  const WaterPalette& palette = program->display.options.palette;
  EXPECT_NE(palette[100].Argb(), palette[400].Argb());
  EXPECT_EQ(analysis.spectrumDivisor, 150);
  form.Slider.UserPick(1);
  EXPECT_EQ(analysis.spectrumDivisor, 10);
  form.Slider2.UserPick(7);
  EXPECT_EQ(analysis.waterfallSensitivity, 7);
  form.lblMode.enabled = true;
  for (const auto& [mode, absolute, first] :
       {std::tuple{69, true, "-6kc"}, std::tuple{1, false, "-12kHz"}, std::tuple{1, true, "0kHz"},
        std::tuple{0, false, "0kHz"}}) {
    form.mnusettings[4].checked = absolute;
    form.mnuzokamodes[mode].Click();
    EXPECT_EQ(form.mnuzokamodes[0].checked, mode == 0);
    EXPECT_EQ(form.lblMode.enabled, mode != 0);
    EXPECT_EQ(form.Scope.markers.Get()[0].visible, mode != 0);
    EXPECT_EQ(form.lblScales[0].caption.Get(), first);
  }
  EXPECT_EQ(form.Scope.verticalGrid.Get()[5].x1, form.Scope.scaleWidth / 2);
  form.mnuprecision[3].Click();
  EXPECT_EQ(analysis.precision, 3);
  // No level lines lie across the waterfall.
  for (const bool waterfall : {false, true}) {
    form.chkSpecMode.UserPick(waterfall);
    EXPECT_EQ(analysis.waterfall, waterfall);
    EXPECT_EQ(form.Scope.horizontalGrid.Get().at(0).visible, !waterfall);
  }
  EXPECT_EQ(form.lblFreqDetect.caption.Get(), "0kc");
  form.mnudomfreq.Click();
  EXPECT_FALSE(analysis.dominantPeak || form.lblFreqDetect.visible);
  form.mnusettings[2].checked = true;  // takes effect with the next start
  EXPECT_FALSE(analysis.oscillosMode);
  StartCapture();
  EXPECT_TRUE(analysis.oscillosMode && !form.lblFreqDetect.stale);
  audio.Tell(AudioEvent::Kind::Lost, "usb");
  scheduler.RunPosted();
  EXPECT_TRUE(form.lblFreqDetect.stale);
}

TEST(SMeter, TwiceTheLevelIsOneUnitAndTheScaleHasTwelve) {
  // The bar is of a frame 96 pixels high.
  for (const auto& [twips, bar] :
       {std::pair{-5, 0}, {390, 0}, {3125, 24}, {200000, 72}, {400000, 80}, {2147483647, 96}}) {
    EXPECT_EQ(SMeterBar(twips, 96), bar) << twips;
  }
}

TEST(WindowScale, IsChosenInTheMenuToldAndKept) {
  for (const auto& [stored, shown] : {std::pair{"175", 175}, {"130", 100}, {"1e2", 100}}) {
    ProgramFixture f;
    f.store.Save("Window", "Scale", stored);
    f.Start();
    EXPECT_TRUE(f.Form().mnuscales[shown].checked) << stored;
    f.Form().cmdOptions.Click();
    EXPECT_TRUE(f.prompts.Choose("150 %"));
    EXPECT_EQ(f.prompts.told.size(), 1U);  // that it holds from the next start
    f.Close();
    EXPECT_EQ(f.store.Get("Window", "Scale"), "150");
  }
}

}  // namespace
}  // namespace velt

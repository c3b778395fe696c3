#include <gtest/gtest.h>

#include <cmath>

#include "support/doubles.h"

namespace velt {
namespace {

TEST(AnalysisTick, AToneReachesPeakLabelMeterAndDisplay) {
  ProgramFixture f;
  f.Start();
  for (size_t i = 0; i < kBlockSamples; ++i) {
    f.audio.samples[i] = static_cast<int16_t>(
        8000.0 * std::sin(2.0 * 3.14159265358979 * 3000.0 * static_cast<double>(i) / 44100.0));
  }
  f.StartCapture();
  const uint32_t before = f.Form().Scope.frame;
  f.scheduler.Advance(Milliseconds(60));
  EXPECT_EQ(f.Form().Scope.frame, before + 2);
  EXPECT_LT(f.Form().Smeter.topTwips, 0);
  EXPECT_NEAR(f.program->display.tick.DominantFrequency(), 3000, 90);
  EXPECT_EQ(f.Form().lblFreqDetect.caption.Get(),
            std::to_string(f.program->display.tick.DominantFrequency()) + "Hz");
  const Raster& shown = f.program->display.tick.Shown();
  ASSERT_EQ(shown.Width(), f.Form().Scope.scaleWidth);
  const int column = 3000 * shown.Width() / 22115;
  const uint32_t background = f.Form().Scope.backColour;
  EXPECT_NE(shown.Row(shown.Height() / 4)[static_cast<size_t>(column)], background);
  EXPECT_EQ(shown.Row(shown.Height() / 4)[static_cast<size_t>(column + 60)], background);
}

TEST(AnalysisTick, TheRigsFrequencyAndTheEnginesPassbandReachTheDisplay) {
  ProgramFixture f;
  f.Start();
  Rig& rig = f.program->rig;
  rig.state.RealRigFrequency = 14074000;
  rig.engine.passbandLow = 7000;
  rig.engine.passbandHigh = 9000;
  AnalysisTick& tick = f.program->display.tick;
  f.Form().Scope.scaleWidth = 1000;
  f.Form().Scope.scaleHeight = 20;
  f.Form().mnuzokamodes[69].Click();
  f.audio.open = true;
  f.audio.samples[0] = 10000;  // every bin alike, so the last column is the peak
  tick.Timer1_Timer();
  EXPECT_EQ(f.Form().lblFreqDetect.caption.Get().substr(0, 4), "1407");
  // 1000 / 11500 of the edge less 5760, and for the upper one column more.
  f.audio.samples[0] = 0;
  tick.Timer1_Timer();
  const auto row = tick.Shown().Row(0);
  const uint32_t band = f.program->display.options.analysis.passband.Argb();
  for (const auto& [column, inside] :
       {std::pair{107, false}, {108, true}, {283, true}, {284, false}}) {
    EXPECT_EQ(row[static_cast<size_t>(column)] == band, inside) << column;
  }
}

TEST(DisplayOptions, FollowMenusSlidersAndCheckBox) {
  ProgramFixture f;
  f.Start();
  Main& form = f.Form();
  const AnalysisSettings& analysis = f.program->display.options.analysis;
  const WaterPalette& palette = f.program->display.options.palette;
  EXPECT_NE(palette[100].Argb(), palette[400].Argb());
  form.Slider.UserPick(15);
  EXPECT_EQ(analysis.spectrumDivisor, 150);
  form.Slider.UserPick(1);
  EXPECT_EQ(analysis.spectrumDivisor, 10);
  form.Slider2.UserPick(7);
  EXPECT_EQ(analysis.waterfallSensitivity, 7);
  form.lblMode.enabled = true;
  form.mnuzokamodes[69].Click();
  EXPECT_EQ(analysis.zokaMode, 69);
  EXPECT_TRUE(form.mnuzokamodes[69].checked);
  EXPECT_FALSE(form.mnuzokamodes[0].checked);
  EXPECT_TRUE(form.lblMode.enabled);
  form.mnuzokamodes[0].Click();
  EXPECT_FALSE(form.lblMode.enabled);
  form.mnuprecision[3].Click();
  EXPECT_EQ(analysis.precision, 3);
  form.chkSpecMode.UserPick(true);
  EXPECT_TRUE(analysis.waterfall);
  EXPECT_EQ(form.lblFreqDetect.caption.Get(), "0kc");
  form.mnudomfreq.Click();
  EXPECT_EQ(form.lblFreqDetect.caption.Get(), "");
  EXPECT_FALSE(form.lblFreqDetect.visible);
  EXPECT_FALSE(analysis.dominantPeak);
  EXPECT_FALSE(analysis.oscillosMode);
  form.mnusettings[2].checked = true;  // takes effect with the next start
  f.StartCapture();
  EXPECT_TRUE(analysis.oscillosMode);
}

}  // namespace
}  // namespace velt

#include <gtest/gtest.h>

#include <cmath>

#include "support/doubles.h"

namespace velt {
namespace {

TEST(Capture, StartsAndStopsWithEveryControlInStep) {
  ProgramFixture f;
  f.Start();
  Main& form = f.Form();
  f.program->capture.scanFreqMs = 50;
  f.program->capture.engineStatus = true;
  f.StartCapture();
  EXPECT_EQ(form.imgStartStop.tag.Get(), "Stop");
  EXPECT_TRUE(form.StopButton.enabled);
  EXPECT_FALSE(form.StartButton.enabled);
  EXPECT_FALSE(form.DevicesBox.enabled);
  EXPECT_TRUE(form.Timer1.enabled);
  EXPECT_EQ(form.Timer1.interval, 50);
  EXPECT_TRUE(form.tmrStatus.enabled);
  EXPECT_TRUE(form.lblMode.enabled);
  EXPECT_TRUE(f.program->capture.Capturing());
  form.Smeter.topTwips = -300;
  form.imgStartStop.Click();
  EXPECT_EQ(form.imgStartStop.tag.Get(), "Play");
  EXPECT_FALSE(form.StopButton.enabled);
  EXPECT_TRUE(form.StartButton.enabled);
  EXPECT_FALSE(form.Timer1.enabled);
  EXPECT_FALSE(form.tmrStatus.enabled);
  EXPECT_FALSE(form.lblMode.enabled);
  EXPECT_EQ(form.Smeter.topTwips, 0);
  EXPECT_FALSE(f.audio.open);
}

TEST(Capture, AFailedOpenShowsItsBoxAndStaysIdle) {
  ProgramFixture f;
  f.Start();
  f.audio.answer = FakeAudioInput::Answer::Failed;
  f.StartCapture();
  ASSERT_EQ(f.prompts.told.size(), 1U);
  EXPECT_EQ(f.prompts.told[0].title, "Err in Device opening 0");
  EXPECT_EQ(f.prompts.told[0].text, "Wave input device didn't open!");
  EXPECT_EQ(f.Form().lblMessage.caption.Get(), "No sound server.");
  EXPECT_EQ(f.Form().lblNotice.caption.Get(), "No sound server.");
  EXPECT_EQ(f.Form().imgStartStop.tag.Get(), "Play");
  EXPECT_TRUE(f.Form().StartButton.enabled);
  EXPECT_FALSE(f.Form().Timer1.enabled);
  EXPECT_FALSE(f.audio.watching);
  f.audio.answer = FakeAudioInput::Answer::Opened;
  f.StartCapture();
  EXPECT_FALSE(f.Form().lblNotice.visible);
}

TEST(Capture, AnAutomaticStartWaitsForWhatIsNotThereYet) {
  ProgramFixture f;
  f.store.Save("VELT-SA", "AutoStartSA", "True");
  f.audio.answer = FakeAudioInput::Answer::Failed;
  f.Start();
  EXPECT_TRUE(f.audio.watching);
  for (const auto& box : f.prompts.told) EXPECT_NE(box.text, "Wave input device didn't open!");
  EXPECT_EQ(f.Form().lblNotice.caption.Get(), "No sound server. Waiting for it.");
  EXPECT_EQ(f.Form().imgStartStop.tag.Get(), "Stop");
  f.audio.answer = FakeAudioInput::Answer::Opened;
  f.audio.Tell(AudioEvent::Kind::Returned, "usb");
  f.scheduler.RunPosted();
  EXPECT_TRUE(f.Form().Timer1.enabled);
  EXPECT_FALSE(f.Form().lblNotice.visible);
  EXPECT_EQ(f.Form().lblMessage.caption.Get(), "Sound now comes from The usb.");
}

TEST(Capture, StoppingWhileOpeningOpensNothing) {
  ProgramFixture f;
  f.Start();
  f.Form().imgStartStop.Click();
  f.Form().imgStartStop.Click();
  f.scheduler.RunPosted();  // the answer comes too late
  EXPECT_FALSE(f.program->capture.DeviceOpen());
  EXPECT_FALSE(f.Form().Timer1.enabled);
  EXPECT_EQ(f.Form().imgStartStop.tag.Get(), "Play");
}

TEST(Capture, GoesOnByItselfWhenALostInputReturns) {
  ProgramFixture f;
  f.Start();
  f.StartCapture();
  f.audio.open = false;
  f.audio.Tell(AudioEvent::Kind::Lost, "The source was removed.");
  f.scheduler.RunPosted();
  EXPECT_FALSE(f.Form().Timer1.enabled);
  EXPECT_TRUE(f.audio.watching);
  EXPECT_TRUE(f.Form().lblNotice.visible);
  EXPECT_EQ(f.Form().lblMessage.caption.Get(), "The source was removed.");
  EXPECT_EQ(f.Form().imgStartStop.tag.Get(), "Stop");
  // It vanishes again while it is being opened: no box, the watch goes on.
  f.audio.answer = FakeAudioInput::Answer::Failed;
  f.audio.Tell(AudioEvent::Kind::Returned, "");
  f.scheduler.RunPosted();
  EXPECT_TRUE(f.prompts.told.empty());
  EXPECT_TRUE(f.audio.watching);
  f.audio.answer = FakeAudioInput::Answer::Opened;
  f.audio.Tell(AudioEvent::Kind::Returned, "usb");
  f.scheduler.RunPosted();
  EXPECT_EQ(f.audio.device, "");  // the default: it may be another one by now
  EXPECT_TRUE(f.Form().Timer1.enabled);
  EXPECT_FALSE(f.Form().lblNotice.visible);
  EXPECT_EQ(f.Form().lblMessage.caption.Get(), "Sound is back.");
}

TEST(Capture, SaysAndShowsWhereTheSoundComesFrom) {
  ProgramFixture f;
  f.Start();
  f.StartCapture();
  EXPECT_EQ(f.Form().lblSource.caption.Get(), "The usb");
  EXPECT_EQ(f.Form().lblMessage.caption.Get(), "");
  f.scheduler.Advance(Milliseconds(100));
  f.audio.Tell(AudioEvent::Kind::Moved, "mic");
  f.scheduler.RunPosted();
  EXPECT_EQ(f.Form().lblSource.caption.Get(), "The mic");
  EXPECT_EQ(f.Form().lblMessage.caption.Get(), "Sound now comes from The mic.");
  f.audio.result = TakeResult::NotYet;
  f.scheduler.Advance(Milliseconds(2000));  // the new source needs its time to begin
  EXPECT_TRUE(f.Form().Timer1.enabled);
  f.audio.Tell(AudioEvent::Kind::Lost, "Gone.");
  f.audio.source = "line";
  f.audio.Tell(AudioEvent::Kind::Returned, "line");
  f.scheduler.RunPosted();
  EXPECT_EQ(f.Form().lblSource.caption.Get(), "The line");
  EXPECT_EQ(f.Form().lblMessage.caption.Get(), "Sound now comes from The line.");
}

TEST(Capture, StoppingEndsTheWaitForALostInput) {
  ProgramFixture f;
  f.Start();
  f.StartCapture();
  f.audio.Tell(AudioEvent::Kind::Lost, "Gone.");
  f.scheduler.RunPosted();
  f.Form().imgStartStop.Click();
  EXPECT_FALSE(f.audio.watching);
  EXPECT_FALSE(f.Form().lblNotice.visible);
  f.audio.Tell(AudioEvent::Kind::Returned, "");
  f.scheduler.RunPosted();
  EXPECT_FALSE(f.Form().Timer1.enabled);
}

TEST(Capture, AStreamThatStopsDeliveringIsLostWithinASecond) {
  ProgramFixture f;
  f.Start();
  f.StartCapture();
  f.scheduler.Advance(Milliseconds(100));
  f.audio.result = TakeResult::NotYet;
  f.scheduler.Advance(Milliseconds(450));
  EXPECT_TRUE(f.Form().Timer1.enabled);
  f.scheduler.Advance(Milliseconds(450));
  EXPECT_FALSE(f.Form().Timer1.enabled);
  EXPECT_TRUE(f.audio.watching);
  EXPECT_TRUE(f.Form().lblNotice.visible);
}

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
  EXPECT_NEAR(f.program->tick.DominantFrequency(), 3000, 90);
  EXPECT_EQ(f.Form().lblFreqDetect.caption.Get(),
            std::to_string(f.program->tick.DominantFrequency()) + "Hz");
  const Raster& shown = f.program->tick.Shown();
  ASSERT_EQ(shown.Width(), f.Form().Scope.scaleWidth);
  const int column = 3000 * shown.Width() / 22115;
  const uint32_t background = f.Form().Scope.backColour;
  EXPECT_NE(shown.Row(shown.Height() / 4)[static_cast<size_t>(column)], background);
  EXPECT_EQ(shown.Row(shown.Height() / 4)[static_cast<size_t>(column + 60)], background);
}

TEST(AnalysisTick, TheRigsFrequencyAndTheEnginesPassbandReachTheDisplay) {
  ProgramFixture f;
  f.Start();
  RigState rig;
  rig.RealRigFrequency = 14074000;
  EngineState engine;
  engine.passbandLow = 7000;
  engine.passbandHigh = 9000;
  AnalysisTick tick(
      {f.Form(), f.Form(), f.audio, f.program->capture, f.program->display, rig, engine});
  tick.SetDisplaySize(1000, 20);
  f.Form().mnuzokamodes[69].Click();
  f.audio.open = true;
  f.audio.samples[0] = 10000;  // every bin alike, so the last column is the peak
  tick.Timer1_Timer();
  EXPECT_EQ(f.Form().lblFreqDetect.caption.Get().substr(0, 4), "1407");
  // 1000 / 11500 of the edge less 5760, and for the upper one column more.
  f.audio.samples[0] = 0;
  tick.Timer1_Timer();
  const auto row = tick.Shown().Row(0);
  const uint32_t band = f.program->display.analysis.passband.Argb();
  for (const auto& [column, inside] :
       {std::pair{107, false}, {108, true}, {283, true}, {284, false}}) {
    EXPECT_EQ(row[static_cast<size_t>(column)] == band, inside) << column;
  }
}

TEST(DisplayOptions, FollowMenusSlidersAndCheckBox) {
  ProgramFixture f;
  f.Start();
  Main& form = f.Form();
  const AnalysisSettings& analysis = f.program->display.analysis;
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
}

}  // namespace
}  // namespace velt

#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

TEST(Capture, StartsAndStopsWithEveryControlInStep) {
  ProgramFixture f;
  f.Start();
  Main& form = f.Form();
  f.program->capture.scanFreqMs = 50;
  f.program->installation.enginePresent = true;
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
  EXPECT_TRUE(f.Form().tmrStatus.enabled) << "as it was";
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

}  // namespace
}  // namespace velt

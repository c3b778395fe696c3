#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

struct CaptureTest : testing::Test, ProgramFixture {
  using Kind = AudioEvent::Kind;

  Main& form = program->form;

  // Each gives what is on then.
  std::string Press() {
    StartCapture();
    return State();
  }
  std::string Happens(Kind kind, const std::string& text) {
    audio.Tell(kind, text);
    scheduler.RunPosted();
    return State();
  }
  std::string Message() const { return form.lblMessage.caption; }
  // What the start picture is, then all that is on.
  std::string State() {
    std::string state = form.imgStartStop.tag;
    const auto add = [&state](bool on, const char* name) { state += on ? name : ""; };
    add(audio.open, " open");
    add(form.StartButton.enabled, " startable");
    add(form.StopButton.enabled, " stoppable");
    add(form.Timer1.enabled, " ticks");
    add(form.tmrStatus.enabled, " status");
    add(form.lblMode.enabled, " mode");
    add(audio.watching, " waits");
    add(form.lblNotice.visible, " notice");
    return state;
  }
};

TEST_F(CaptureTest, EveryControlFollowsItsStartAndStop) {
  Start();
  program->capture.scanFreqMs = 50;
  program->installation.enginePresent = true;
  EXPECT_EQ(Press(), "Stop open stoppable ticks status mode");
  EXPECT_EQ(form.Timer1.interval, 50);
  EXPECT_EQ(Press(), "Play startable");
  form.imgStartStop.Click();
  EXPECT_EQ(Press(), "Play startable") << "the answer comes too late";
}

TEST_F(CaptureTest, AFailedOpenIsToldUntilItSucceeds) {
  audio.opens = false;
  Start();
  EXPECT_EQ(Press(), "Play startable status notice");
  EXPECT_EQ(prompts.told.at(0).text, "Wave input device didn't open!");
  EXPECT_EQ(form.lblNotice.caption.Get(), "No sound server.");
  audio.opens = true;
  EXPECT_EQ(Press(), "Stop open stoppable ticks mode");
}

TEST_F(CaptureTest, AnAutomaticStartWaitsForWhatIsNotThereYet) {
  store.Save("VELT-SA", "AutoStartSA", "True");
  audio.opens = false;
  Start();
  EXPECT_EQ(State(), "Stop startable status waits notice");
  EXPECT_TRUE(prompts.told.empty());
  audio.opens = true;
  EXPECT_EQ(Happens(Kind::Returned, "usb"), "Stop open stoppable ticks mode");
}

TEST_F(CaptureTest, GoesOnByItselfWhenALostInputReturnsUnlessItIsStopped) {
  Start();
  Press();
  EXPECT_EQ(Happens(Kind::Lost, "The source was removed."), "Stop startable waits notice");
  EXPECT_EQ(Message(), "The source was removed.");
  // It vanishes again while it is being opened: no box, the watch goes on.
  audio.opens = false;
  EXPECT_EQ(Happens(Kind::Returned, ""), "Stop startable waits notice");
  EXPECT_TRUE(prompts.told.empty());
  audio.opens = true;
  EXPECT_EQ(Happens(Kind::Returned, "usb"), "Stop open stoppable ticks mode");
  EXPECT_EQ(audio.opened.back(), "");  // the default: it may be another one by now
  EXPECT_EQ(Message(), "Sound is back.");
  Happens(Kind::Lost, "Gone.");
  audio.source = "line";
  Happens(Kind::Returned, "line");
  EXPECT_EQ(Message(), "Sound now comes from The line.");
  Happens(Kind::Lost, "Gone.");
  form.imgStartStop.Click();
  EXPECT_EQ(Happens(Kind::Returned, "line"), "Play startable");
}

TEST_F(CaptureTest, AStreamThatStopsDeliveringIsLostWithinASecond) {
  Start();
  Press();
  scheduler.Advance(Milliseconds(100));
  Happens(Kind::Moved, "mic");
  EXPECT_EQ(Message(), "Sound now comes from The mic.");
  audio.result = TakeResult::NotYet;
  scheduler.Advance(Milliseconds(2000));  // the new source needs its time to begin
  EXPECT_TRUE(form.Timer1.enabled);
  audio.result = TakeResult::Block;
  scheduler.Advance(Milliseconds(100));
  audio.result = TakeResult::NotYet;
  scheduler.Advance(Milliseconds(450));
  EXPECT_TRUE(form.Timer1.enabled);
  scheduler.Advance(Milliseconds(450));
  EXPECT_EQ(State(), "Stop startable waits notice");
}

}  // namespace
}  // namespace velt

// The record image, its menu, and what becomes of a recording.
#include "recording/recorder.h"

#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

using Calls = std::vector<std::string>;
using Kind = RecorderEvent::Kind;

TEST(Recorder, AClickRecordsWhatIsHeardAndAnotherOneOrAnyEndFinishesIt) {
  ProgramFixture f;
  for (const int end : {0, 1, 2}) {
    f.Restart();
    f.Start();
    f.StartCapture();
    f.program->carried.recSampleRateHz = 8000;
    Image& record = f.Form().imgRecOnOff[0];
    record.Click();
    const std::string name = "VELTSA_26-03-07_09.05.01.wav";
    EXPECT_EQ(f.recorder.Take(),
              (Calls{"open |usb 8000", "record", "save /home/om/VELT/WAV/" + name}));
    const Label& message = f.Form().lblMessage;
    EXPECT_EQ(message.caption.Get(), "Recording...\\WAV\\" + name + "....");
    for (const bool shown : {true, false, true}) {
      EXPECT_EQ(message.visible, shown);
      f.scheduler.Advance(Milliseconds(500));
    }
    f.Form().imgStartStop.Click();  // the analyser is another affair
    f.recorder.happened.Raise({Kind::NextFile, "", "/W/next_2.wav"});
    EXPECT_EQ(message.caption.Get(), "Recording...\\WAV\\next_2.wav....");
    EXPECT_EQ(f.program->messages.recFileName, "next_2.wav");
    EXPECT_TRUE(f.recorder.Take().empty());
    if (end == 0) record.Click();
    if (end == 1) f.Close();
    if (end == 2) f.Form().mnucloseme.Click();
    EXPECT_EQ(f.recorder.Take(), Calls{"close"});
    EXPECT_TRUE(record.tag.Get().empty() && !message.visible && !f.Form().tmrRec.enabled);
  }
}

TEST(Recorder, ItsMenuPausesTheAnalyserAndWhatGoesWrongIsTold) {
  ProgramFixture f;
  f.Start();
  f.StartCapture();
  const auto choose = [&f](const std::string& line) {
    f.Form().imgRecOnOff[0].UserMenu();
    EXPECT_FALSE(f.program->capture.Capturing());
    EXPECT_TRUE(f.prompts.Choose(line)) << line;
    f.scheduler.RunPosted();
    EXPECT_TRUE(f.program->capture.Capturing());
  };
  const Label& notice = f.Form().lblNotice;
  choose("Start Recording");
  f.recorder.happened.Raise({Kind::Failed, "The disk is full.", "/W/a.wav"});
  EXPECT_EQ(notice.caption.Get(), "The disk is full. What was recorded is in a.wav.");
  choose("Start Recording");
  EXPECT_FALSE(notice.visible);
  f.recorder.happened.Raise({Kind::Finished, "The disk is full.", "/W/a.wav"});  // the one before
  EXPECT_TRUE(notice.visible);
  choose("Stop Recording");

  f.launcher.installed = {"audacity", "kwave", "pavucontrol"};
  choose("Open External MS-Recorder...");
  choose("Soundcard Recording Source Selection...");
  EXPECT_EQ(f.launcher.commands, (std::vector<Calls>{{"kwave"}, {"pavucontrol", "--tab=4"}}));
  f.launcher.programError = EACCES;
  choose("Open External MS-Recorder...");
  EXPECT_EQ(f.prompts.told.back().title, "Not found, Err:13");
  f.launcher.installed.clear();
  choose("Soundcard Recording Source Selection...");
  EXPECT_EQ(f.prompts.told.back().title, "Not found, Err:2");
}

}  // namespace
}  // namespace velt

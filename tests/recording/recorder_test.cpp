// The record image, its menu, and what becomes of a recording.
#include "recording/recorder.h"

#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

using Calls = std::vector<std::string>;

struct RecorderTest : testing::Test, ProgramFixture {
  RecorderTest() {
    Start();
    StartCapture();
    name = "VELTSA_26-03-07_09.05.01.wav";
  }
  Image& Record() { return Form().imgRecOnOff[0]; }
  void Tell(RecorderEvent::Kind kind, const std::string& text, const std::string& file) {
    recorder.happened.Raise({kind, text, file});
  }
  std::string name;
};

TEST_F(RecorderTest, AClickRecordsTheSourceThatIsHeardAndAnotherOneEndsIt) {
  EXPECT_TRUE(Record().enabled);
  EXPECT_EQ(Record().toolTip.Get(), "Record to wav (ON/Off)");
  program->carried.recSampleRateHz = 8000;
  Record().Click();
  EXPECT_EQ(recorder.Take(), (Calls{"open |usb 8000", "record", "save /home/om/VELT/WAV/" + name}));
  EXPECT_EQ(Record().tag.Get(), "Rec");
  EXPECT_EQ(Record().toolTip.Get(), " Recording...(click to stop)");
  EXPECT_EQ(Form().lblMessage.caption.Get(), "Recording...\\WAV\\" + name + "....");
  // The message blinks: shown at the start, hidden for one tick, shown for the next.
  for (const bool shown : {true, false, true, false}) {
    EXPECT_EQ(Form().lblMessage.visible, shown);
    scheduler.Advance(Milliseconds(500));
  }
  // The analyser is another affair.
  Form().imgStartStop.Click();
  EXPECT_TRUE(recorder.Take().empty());
  // A name was taken already, or a file is full.
  Tell(RecorderEvent::Kind::NextFile, "", "/home/om/VELT/WAV/next_2.wav");
  EXPECT_EQ(Form().lblMessage.caption.Get(), "Recording...\\WAV\\next_2.wav....");
  EXPECT_EQ(program->messages.recFileName, "next_2.wav");

  Record().Click();
  EXPECT_EQ(recorder.Take(), Calls{"close"});
  EXPECT_EQ(Record().tag.Get(), "");
  EXPECT_FALSE(Form().lblMessage.visible || Form().tmrRec.enabled);
  EXPECT_TRUE(Record().enabled);
}

TEST_F(RecorderTest, ItsMenuPausesTheAnalyserAndSaysWhatItWillDo) {
  for (const char* line : {"Start Recording", "Stop Recording"}) {
    Record().UserMenu();
    EXPECT_FALSE(program->capture.Capturing());
    EXPECT_TRUE(prompts.Choose(line));
    scheduler.RunPosted();
    EXPECT_TRUE(program->capture.Capturing());
  }
  EXPECT_EQ(recorder.Take().back(), "close");
  // Nothing was open, nothing is started.
  Form().imgStartStop.Click();
  Record().UserMenu();
  prompts.Choose("");
  EXPECT_FALSE(program->capture.DeviceOpen());
}

TEST_F(RecorderTest, ItsMenuStartsWhatTheDesktopHas) {
  struct Case {
    const char* line;
    std::set<std::string> installed;
    Calls started;  // empty: a box with `error`
    int error;
  };
  const char* recorderLine = "Open External MS-Recorder...";
  const char* mixerLine = "Soundcard Recording Source Selection...";
  for (const Case& c :
       {Case{recorderLine, {"audacity", "kwave"}, {"kwave"}, 0}, Case{recorderLine, {}, {}, ENOENT},
        Case{recorderLine, {"sweep"}, {}, EACCES},
        Case{mixerLine, {"pavucontrol"}, {"pavucontrol", "--tab=4"}, 0},
        Case{mixerLine, {}, {}, ENOENT}}) {
    launcher.installed = c.installed;
    launcher.programError = c.error;
    launcher.commands.clear();
    prompts.told.clear();
    Record().UserMenu();
    EXPECT_TRUE(prompts.Choose(c.line));
    if (!c.started.empty()) {
      EXPECT_EQ(launcher.commands, std::vector<Calls>{c.started});
      continue;
    }
    ASSERT_EQ(prompts.told.size(), 1U);
    EXPECT_EQ(prompts.told[0].title, "Not found, Err:" + std::to_string(c.error));
    EXPECT_TRUE(prompts.told[0].text.starts_with(
        c.line == recorderLine ? "Could not find MS-Sound Recorder (SNDREC32.EXE)\r\nInstall "
                               : "Could not find MS-Volume Control (SNDVOL32.EXE, or SNDVOL.EXE)"));
  }
}

TEST_F(RecorderTest, WhatEndsByItselfIsToldUntilTheNextOne) {
  using Kind = RecorderEvent::Kind;
  struct Case {
    Kind kind;
    std::string file, told;
  };
  for (const Case& c :
       {Case{Kind::Failed, "", "The disk is full."},
        Case{Kind::Failed, "/W/a.wav", "The disk is full. What was recorded is in a.wav."},
        // The rest of one that was ended: the next one goes on.
        Case{Kind::Finished, "/W/a.wav", "The disk is full."}}) {
    Record().Click();
    EXPECT_FALSE(Form().lblNotice.visible);
    Tell(c.kind, "The disk is full.", c.file);
    EXPECT_EQ(Form().lblNotice.caption.Get(), c.told);
    EXPECT_EQ(Form().lblMessage.caption.Get(), c.told);
    EXPECT_EQ(Record().tag.Get(), c.kind == Kind::Failed ? "" : "Rec");
    EXPECT_EQ(Form().tmrRec.enabled, c.kind != Kind::Failed);
  }
}

TEST_F(RecorderTest, EveryEndOfTheProgramFinishesIt) {
  for (const bool atOnce : {false, true}) {
    Restart();
    Start();
    StartCapture();
    Record().Click();
    recorder.Take();
    atOnce ? Form().mnucloseme.Click() : static_cast<void>(Close());
    EXPECT_EQ(recorder.Take(), Calls{"close"});
  }
}

}  // namespace
}  // namespace velt

#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

struct SpectrogramDialogTest : testing::Test, ProgramFixture {
  SpectrogramForm& dialog = program->spectrogramForm;
  const Label& message = dialog.lblMessage;
  const Label& problem = dialog.lblProblem;

  SpectrogramDialogTest() {
    Start();
    soundFile.blocks.resize(1000);
    soundFile.each = Milliseconds(2);
    // One loud block among silence.
    for (size_t i = 0; i < kBlockSamples; i += 2) soundFile.blocks[600][i] = 20000;
  }
  void Choose(const std::filesystem::path& file) {
    Form().mnuspectrogram.Click();
    fileChooser.Choose(file);
  }
  const RecordingSpectrogram* Shown() const { return program->spectrogram.Shown(); }
};

TEST_F(SpectrogramDialogTest, ReadsInShortSlicesShowsAndSaves) {
  Form().mnuspectrogram.Click();
  EXPECT_EQ(fileChooser.asked.folder.filename(), "WAV");
  EXPECT_FALSE(dialog.Window.visible);
  fileChooser.Choose("/r/a.wav");
  EXPECT_TRUE(dialog.Window.visible && dialog.prgWork.visible && dialog.cmdCancel.enabled);
  // Whatever else is due has its turn within 20 ms.
  for (int turn = 0; dialog.prgWork.visible; ++turn) {
    ASSERT_LT(turn, 10000);
    const SteadyTime last = scheduler.Now();
    scheduler.Advance(Milliseconds(1));
    EXPECT_LE(scheduler.Now() - last, Milliseconds(20));
  }
  ASSERT_NE(Shown(), nullptr);
  EXPECT_NEAR(Shown()->strongest.seconds, 600 * 512 / 44100.0, 0.03);
  EXPECT_TRUE(message.caption.Get().starts_with("Strongest -")) << message.caption.Get();

  dialog.cmdSave.Click();
  EXPECT_EQ(fileChooser.asked.name, "a spectrogram.png");
  fileChooser.Choose("/p/x.png");
  EXPECT_EQ(message.caption.Get(), "Saved as /p/x.png");
  spectrograms.error = ENOSPC;
  dialog.cmdSave.Click();
  fileChooser.Choose("/p/y.png");
  EXPECT_EQ(problem.caption.Get(), "/p/y.png could not be written: No space left on device.");
  // Neither the recording nor a file that is there is written over unasked.
  spectrograms.error = 0;
  files.files["/r/a.wav"] = "sound";
  files.files["/p/z.png"] = "picture";
  dialog.cmdSave.Click();
  fileChooser.Choose("/r/a.wav");
  EXPECT_NE(problem.caption.Get().find("the recording itself"), std::string::npos);
  dialog.cmdSave.Click();
  fileChooser.Choose("/p/z.png");
  ASSERT_EQ(spectrograms.written.size(), 1U);
  prompts.answer(true);
  EXPECT_EQ(spectrograms.written.back(), "/p/z.png");
}

TEST_F(SpectrogramDialogTest, AnotherDialogsQuestionIsLeftAlone) {
  program->bandDialog.Open();
  program->bandsForm.cmdExport.Click();
  Form().mnuspectrogram.Click();
  ASSERT_TRUE(fileChooser.answer);
  fileChooser.Choose("/csv/new.csv");
  EXPECT_TRUE(files.files.contains("/csv/new.csv"));
  program->bandDialog.Close();
  EXPECT_TRUE(Form().Window.topMost) << "nothing was asked for which it would be lowered";
}

TEST_F(SpectrogramDialogTest, WhatCannotBeReadOrIsCancelledLeavesWhatWasShown) {
  Choose("/r/a.wav");
  scheduler.Advance(std::chrono::seconds(10));
  const RecordingSpectrogram* const before = Shown();
  ASSERT_NE(before, nullptr);
  Choose("/r/b.wav");
  scheduler.Advance(Milliseconds(100));
  EXPECT_GT(dialog.prgWork.percent, 0);
  dialog.cmdCancel.Click();
  EXPECT_EQ(message.caption.Get(), "Cancelled, b.wav was not read to its end");
  const size_t read = soundFile.next;
  scheduler.Advance(std::chrono::seconds(10));
  EXPECT_EQ(soundFile.next, read);
  soundFile.failure = "c.wav: the file is empty";
  Choose("/r/c.wav");
  EXPECT_EQ(problem.caption.Get(), soundFile.failure);
  EXPECT_FALSE(dialog.cmdCancel.enabled);
  EXPECT_EQ(Shown()->file, "/r/a.wav");
  EXPECT_TRUE(dialog.cmdSave.enabled);

  // A file that does not tell its length is counted first; one with a fault is shown with it.
  soundFile.failure.clear();
  soundFile.tellsLength = false;
  soundFile.warning = "d.wav: cut off";
  Choose("/r/d.wav");
  scheduler.Advance(std::chrono::seconds(20));
  EXPECT_EQ(problem.caption.Get(), soundFile.warning);
  EXPECT_NEAR(Shown()->toSeconds, 1000 * 512 / 44100.0, 1e-6);

  Choose("/r/a.wav");
  dialog.Window.closeAsked.Raise();
  EXPECT_FALSE(dialog.Window.visible || dialog.prgWork.visible || Shown() != nullptr);
  scheduler.Advance(std::chrono::seconds(10));
  EXPECT_EQ(Shown(), nullptr);
}

}  // namespace
}  // namespace velt

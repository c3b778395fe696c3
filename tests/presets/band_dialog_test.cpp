// The band preset dialog in the whole program over doubles.
#include "presets/band_dialog.h"

#include <gtest/gtest.h>

#include "presets/preset_csv.h"
#include "presets/preset_text.h"
#include "support/doubles.h"

namespace velt {
namespace {

struct BandDialogTest : testing::Test, ProgramFixture {
  BandDialogTest() {
    Start();
    Open();
  }
  void Open() {
    main.cmdOptions.Click();
    EXPECT_TRUE(prompts.Choose("Setup Frequencies Presets..."));
  }
  std::string Shown(int32_t band) {
    return form.txtFreqCaption[band].text.Get() + " " + form.txtFrequencies[band].text.Get();
  }
  std::string Saved() {
    return files.Read(program->installation.dataFolder / "ExpandPresets.ini").bytes;
  }

  Main& main = program->form;
  BandsForm& form = program->bandsForm;
  PresetTable& presets = program->presets;
};

TEST_F(BandDialogTest, OnlyOKTakesTheTextsAsTheyStand) {
  int broughtForward = 0;
  const Connection forward = form.Window.forwardWanted.Listen([&] { ++broughtForward; });
  EXPECT_FALSE(main.Window.topMost);
  Open();
  EXPECT_EQ(broughtForward, 1);
  EXPECT_EQ(Shown(0) + Shown(9), "160m 18006m 50000");

  const std::string before = PresetText(presets);
  for (const auto& leave :
       {std::function([&] { form.Command2.Click(); }), {[&] { form.Window.closeAsked.Raise(); }}}) {
    form.txtFreqCaption[4].UserText("none");
    leave();
    EXPECT_FALSE(form.Window.visible);
    EXPECT_TRUE(main.Window.topMost);
    EXPECT_EQ(PresetText(presets), before);
    presets.Cell(7, PresetTable::kTitle) = "M\xfcnchen";  // no UTF-8
    Open();
    EXPECT_EQ(Shown(4) + Shown(7), "20m 14000M\xfcnchen 24900");
    presets.Cell(7, PresetTable::kTitle) = "12m";
  }
  form.txtFreqCaption[4].UserText(" 20m DX ");
  form.txtFreqCaption[5].UserText("");
  form.txtFrequencies[4].UserText("14,195 up");
  form.txtFrequencies[9].UserText("50313");
  presets.Cell(7, PresetTable::kTitle) = "E\xfc";  // by the panel, beside the dialog
  presets.SelectedBand = 4;
  presets.SelectedPreset = 2;
  form.Command1.Click();
  EXPECT_FALSE(form.Window.visible);
  EXPECT_EQ(presets.SelectedBand + presets.SelectedPreset, 0);
  PresetTable expected;
  expected.Cell(4, 0) = " 20m DX ";
  expected.Cell(5, 0) = "";
  expected.Cell(7, 0) = "E\xfc";
  expected.Cell(4, 6) = "14,195 up";
  expected.Cell(9, 6) = "50313";
  EXPECT_EQ(PresetText(presets), PresetText(expected));
  EXPECT_EQ(main.mnuBands[40].caption.Get() + main.optBandsFreq[4].caption.Get(),
            " 20m DX  20m DX ");
  EXPECT_EQ(main.mnuBands[50].caption.Get(), "");
  EXPECT_EQ(Saved(), "") << "not before the end";

  Open();
  form.cmdImport.Click();
  form.txtFreqCaption[0].UserText("none");
  Close();  // the program, with all that open
  EXPECT_FALSE(form.Window.visible || fileChooser.answer);
  EXPECT_EQ(Saved(), PresetText(expected));
}

TEST_F(BandDialogTest, TakesTheTableFromAFileAndGivesItAway) {
  PresetTable other;
  other.Cell(9, 0) = "4m";
  files.files["/csv/good.csv"] = PresetCsv(other);
  files.files["/csv/bad.csv"] = PresetCsv(other).replace(PresetCsv(other).find("50000"), 5, "5e9");
  files.folders.insert("/csv");
  const auto import = [&](const char* file) {
    form.cmdImport.Click();
    fileChooser.Choose(file);
  };
  form.txtFreqCaption[4].UserText("typed");
  import("/csv/bad.csv");
  EXPECT_EQ(form.lblProblem.caption.Get(),
            "bad.csv, line 56, frequency kHz: \"5e9\" is not above 10 kHz and at most 2000000 kHz");
  EXPECT_EQ(Shown(4) + Shown(9), "typed 140006m 50000");
  EXPECT_EQ(presets.Cell(9, 0), "6m");
  import("/csv/good.csv");
  EXPECT_EQ(form.lblProblem.caption.Get() + form.lblMessage.caption.Get(),
            "Imported and saved: good.csv");
  EXPECT_EQ(Shown(4) + Shown(9), "20m 140004m 50000");
  EXPECT_EQ(main.mnuBands[90].caption.Get(), "4m");
  EXPECT_EQ(Saved(), PresetText(other));

  form.txtFreqCaption[4].UserText("typed");
  for (const bool replace : {false, true}) {
    form.cmdExport.Click();
    EXPECT_EQ(fileChooser.asked.folder, "/csv");
    fileChooser.Choose("/csv/bad.csv");
    EXPECT_EQ(prompts.asked.back().text, "bad.csv is there already. Replace it?");
    prompts.answer(replace);
    EXPECT_EQ(files.files["/csv/bad.csv"] == PresetCsv(other), replace);
  }
  EXPECT_EQ(form.lblMessage.caption.Get(), "Exported as bad.csv, without what is not kept yet");
  form.cmdExport.Click();
  const auto late = fileChooser.answer;
  form.Command2.Click();
  EXPECT_FALSE(fileChooser.answer);
  // The chooser is the spectrogram's too: neither takes the other's question away.
  main.mnuspectrogram.Click();
  Open();
  form.cmdImport.Click();
  form.Command2.Click();
  EXPECT_EQ(fileChooser.asked.title, "Spectrogram of a recording");
  EXPECT_TRUE(fileChooser.answer);
  fileChooser.Choose("/none.wav");
  Open();
  form.cmdImport.Click();
  program->spectrogramForm.cmdClose.Click();
  main.mnuspectrogram.Click();
  EXPECT_TRUE(fileChooser.answer);
  form.Command2.Click();
  EXPECT_TRUE(main.Window.topMost) << "a question that was refused lowers nothing";
  late("/csv/late.csv");  // was on its way
  EXPECT_FALSE(files.files.contains("/csv/late.csv"));

  Open();
  form.cmdExport.Click();
  fileChooser.Choose("/csv/new.csv");
  EXPECT_EQ(files.files["/csv/new.csv"], PresetCsv(other));
  form.cmdExport.Click();
  fileChooser.Choose("/csv/new.csv");
  form.Command2.Click();
  files.writable = false;
  prompts.answer(true);
  EXPECT_NE(prompts.told.back().text.find("/csv/new.csv could not be written"), std::string::npos);
}

}  // namespace
}  // namespace velt

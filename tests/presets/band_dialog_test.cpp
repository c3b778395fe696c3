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
  void Open() { main.mnuSetupBands.Click(); }
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
  EXPECT_EQ(Told(form.Window.forwardWanted, [&] { Open(); }), 1);
  EXPECT_FALSE(main.Window.topMost);
  const std::string before = PresetText(presets);
  for (const bool byFrame : {false, true}) {
    form.txtFreqCaption[4].UserText("none");
    (byFrame ? form.Window.closeAsked : form.Command2.clicked).Raise();
    EXPECT_TRUE(main.Window.topMost && !form.Window.visible);
    EXPECT_EQ(PresetText(presets), before);
    presets.Cell(7, PresetTable::kTitle) = "M\xfcnchen";  // no UTF-8
    Open();
    EXPECT_EQ(Shown(4) + Shown(7), "20m 14000M\xfcnchen 24900");
    presets.Cell(7, PresetTable::kTitle) = "12m";
  }
  form.txtFreqCaption[4].UserText(" 20m DX ");
  form.txtFrequencies[4].UserText("14,195 up");
  presets.Cell(7, PresetTable::kTitle) = "E\xfc";  // by the panel, beside the dialog
  form.Command1.Click();
  PresetTable expected;
  expected.Cell(4, 0) = " 20m DX ";
  expected.Cell(7, 0) = "E\xfc";
  expected.Cell(4, 6) = "14,195 up";
  EXPECT_EQ(PresetText(presets), PresetText(expected));
  EXPECT_EQ(main.mnuBands[40].caption.Get(), " 20m DX ");
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
  const auto answer = [this](const Button& question, const char* file) {
    question.Click();
    fileChooser.Choose(file);
  };
  form.txtFreqCaption[4].UserText("typed");
  answer(form.cmdImport, "/csv/bad.csv");
  EXPECT_EQ(form.lblProblem.caption.Get(),
            "bad.csv, line 56, frequency kHz: \"5e9\" is not above 10 kHz and at most 2000000 kHz");
  EXPECT_EQ(Shown(4) + Shown(9), "typed 140006m 50000");
  EXPECT_EQ(presets.Cell(9, 0), "6m");
  answer(form.cmdImport, "/csv/good.csv");
  EXPECT_EQ(form.lblProblem.caption.Get() + form.lblMessage.caption.Get(),
            "Imported and saved: good.csv");
  EXPECT_EQ(Shown(4) + Shown(9), "20m 140004m 50000");
  EXPECT_EQ(Saved(), PresetText(other));

  form.txtFreqCaption[4].UserText("typed");
  for (const bool replace : {false, true}) {
    answer(form.cmdExport, "/csv/bad.csv");
    EXPECT_EQ(fileChooser.asked.folder, "/csv");
    prompts.answer(replace);
    EXPECT_EQ(files.files["/csv/bad.csv"] == PresetCsv(other), replace);
  }
  EXPECT_EQ(form.lblMessage.caption.Get(), "Exported as bad.csv, without what is not kept yet");
  answer(form.cmdExport, "/csv/new.csv");
  EXPECT_EQ(files.files["/csv/new.csv"], PresetCsv(other));
  answer(form.cmdExport, "/csv/new.csv");
  form.Command2.Click();
  files.writable = false;
  prompts.answer(true);
  EXPECT_NE(prompts.told.back().text.find("/csv/new.csv could not be written"), std::string::npos);
}

}  // namespace
}  // namespace velt

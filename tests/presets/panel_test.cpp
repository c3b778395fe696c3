// The rig control panel in the whole program over doubles.
#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

struct PanelTest : testing::Test, ProgramFixture {
  PanelTest() {
    Reachable(true);
    Start();
    scheduler.Advance(Milliseconds(400));
    writes1.Take();
  }
  Main& form = Form();
  PresetTable& presets = program->presets;

  void Answer(const std::optional<std::string>& text) { std::exchange(prompts.input, {})(text); }
};

TEST_F(PanelTest, BandsAndPresetsTuneAndRememberTheirModes) {
  const std::string usb = "Mode " + std::to_string(PM_SSB_U) + " ";
  const std::string lsb = "Mode " + std::to_string(PM_SSB_L) + " ";
  form.optBandsFreq[4].UserPress(1);
  EXPECT_EQ(writes1.TakeLine(), "") << "no preset is selected yet";
  form.optDefFreqs[0].UserPress(1);
  EXPECT_EQ(writes1.TakeLine(), "Freq 14000000 " + usb);
  form.optBandsFreq[1].UserPress(1);
  EXPECT_EQ(writes1.TakeLine(), "Freq 3500000 ");
  EXPECT_EQ(form.cmbPresetMode.text.Get(), "LSB");
  form.optDefFreqs[2].UserPress(1);
  EXPECT_EQ(writes1.TakeLine(), "") << "P3 is no frequency";

  // Band 1, preset 2 learns a mode; another preset keeps its own.
  for (int times = 0; times < 2; ++times) form.cmbPresetMode.UserPick(1);
  EXPECT_EQ(writes1.TakeLine(), usb + usb);
  EXPECT_EQ(presets.Cell(1, PresetTable::kFirstMode + 2), "USB");
  form.optDefFreqs[0].UserPress(1);
  EXPECT_EQ(writes1.TakeLine(), "Freq 3500000 " + lsb);
  form.optDefFreqs[2].UserPress(1);
  EXPECT_EQ(form.cmbPresetMode.text.Get(), "USB");

  for (const char* text : {"1e9", "99999999999", "-7000", "10", "7074.5 FT8"}) {
    presets.Cell(1, PresetTable::kFirstFrequency + 2) = text;
    form.optBandsFreq[1].UserPress(1);
  }
  EXPECT_EQ(writes1.TakeLine(), "Freq 7074500 ");
  program->panel.UpdatePresets(0, 0, true);
  EXPECT_EQ(presets.SelectedBand + presets.SelectedPreset, 0);
  // No button shows the preset that is selected now: its mode stays.
  form.cmbPresetMode.UserPick(1);
  EXPECT_EQ(presets.Cell(0, PresetTable::kFirstMode), "LSB");
}

TEST_F(PanelTest, TheRightButtonEdits) {
  form.optBandsFreq[4].UserPress(2);
  EXPECT_EQ(prompts.inputAsked.initial, "20m");
  Answer("20m D&X");
  // As captions mark them, so that it is shown.
  EXPECT_EQ(form.mnuBands[40].caption.Get() + form.optBandsFreq[4].caption.Get(),
            "20m D&&X20m D&&X");
  for (const std::optional<std::string>& nothing : {std::optional<std::string>(""), {}}) {
    form.optBandsFreq[4].UserPress(2);
    EXPECT_EQ(prompts.inputAsked.initial, "20m D&X");
    Answer(nothing);
    EXPECT_EQ(presets.Cell(4, 0), "20m D&X");
  }
  presets.Cell(4, 0) = "M\xFCnchen";  // of an older system
  form.optBandsFreq[4].UserPress(2);
  EXPECT_EQ(prompts.inputAsked.initial, "M\xC3\xBCnchen");
  Answer({});
  struct Row {
    std::string caption, frequency, proposed, typed, kept;
  };
  for (const Row& row : {Row{"P3", "14.074.00", "14074", "7074.5 kHz", "7074.5"},
                         Row{"10", "14.074.00", "10", "10", "10"},
                         Row{"14200", "14.074.00", "14200", "nonsense", "14200"},
                         Row{"P3", "N/A", "N/A", "14.074.00", "14074"},
                         Row{"P3", ".475.00", "475", "7,0745", "7074.5"}}) {
    std::string& cell = presets.Cell(4, 8);
    cell = row.caption;
    form.optBandsFreq[4].UserPress(1);
    form.lblFrequency.caption = row.frequency;
    form.optDefFreqs[2].UserPress(2);
    EXPECT_EQ(prompts.inputAsked.initial, row.proposed);
    // An answer acts on what it was asked for.
    presets.SelectedPreset = 0;
    form.lblMessage.caption = "";
    Answer(row.typed);
    EXPECT_EQ(cell, row.kept);
    const bool refused = row.typed == "10" || row.typed == "nonsense";
    EXPECT_EQ(form.lblMessage.caption.Get().starts_with("Nothing set"), refused) << row.typed;
  }
}

TEST_F(PanelTest, StepsAndManualEntryWriteTheRig) {
  rig1.SetFreq(14074000);
  for (int32_t i = 0; i < 6; ++i) form.cmdFreqSteps[i].Click();
  EXPECT_EQ(writes1.TakeLine(),
            "Freq 14074000 Freq 14073990 Freq 14072990 Freq 13072990 Freq 14072990 Freq 14073990 "
            "Freq 14074000 ");
  for (const char* typed : {" 7074", "7.0745", "abc", "7 074.5 kHz", "1.2.3", "14,074.5", "10",
                            "14.074.125", "1.296.200.00", "14.250.00"}) {
    form.txtManualFrequency.UserText(typed);
    form.txtManualFrequency.UserEnter();
  }
  EXPECT_EQ(program->panel.ManualFrequencyKHz, 14250);
  form.txtManualFrequency.UserText("7100");
  form.cmdokman.Click();
  EXPECT_EQ(writes1.TakeLine(),
            "Freq 7074000 Freq 7074500 Freq 7074500 Freq 14074500 Freq 14074125 Freq 14250000 "
            "Freq 7100000 ");
  for (const bool shown : {false, true}) {
    form.mnuExpandedRigControl.Click();
    EXPECT_EQ(form.picExpand.visible, shown);
    EXPECT_EQ(form.Window.widthTwips, shown ? 13140 : 8385);
  }
  Reachable(false);
  form.cmdFreqSteps[0].Click();
  EXPECT_EQ(writes1.TakeLine(), "");
}

}  // namespace
}  // namespace velt

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

  std::string Written() {
    std::string all;
    for (const std::string& write : writes1.Take()) all += write + " ";
    return all;
  }
  void Answer(const std::optional<std::string>& text) { std::exchange(prompts.input, {})(text); }
};

TEST_F(PanelTest, BandsAndPresetsTuneAndRememberTheirModes) {
  const std::string usb = "Mode " + std::to_string(PM_SSB_U) + " ";
  const std::string lsb = "Mode " + std::to_string(PM_SSB_L) + " ";
  form.optBandsFreq[4].UserPress(1);
  EXPECT_EQ(Written(), "") << "no preset is selected yet";
  EXPECT_TRUE(form.optBandsFreq[4].value);
  EXPECT_EQ(form.optDefFreqs[0].caption.Get(), "14000");
  form.optDefFreqs[0].UserPress(1);
  EXPECT_EQ(Written(), "Freq 14000000 " + usb);
  form.optBandsFreq[1].UserPress(1);
  EXPECT_EQ(Written(), "Freq 3500000 ");
  EXPECT_FALSE(form.optBandsFreq[4].value);
  EXPECT_EQ(form.cmbPresetMode.text.Get(), "LSB");
  form.optDefFreqs[2].UserPress(1);
  EXPECT_EQ(Written(), "") << "P3 is no frequency";
  EXPECT_TRUE(form.optDefFreqs[2].value && !form.optDefFreqs[0].value);

  // Band 1, preset 2 learns a mode; another preset keeps its own.
  for (int times = 0; times < 2; ++times) {
    form.cmbPresetMode.UserPick(1);
    EXPECT_EQ(Written(), usb);
  }
  EXPECT_EQ(presets.Cell(1, PresetTable::kFirstMode + 2), "USB");
  form.optDefFreqs[0].UserPress(1);
  EXPECT_EQ(Written(), "Freq 3500000 " + lsb);
  EXPECT_EQ(presets.Cell(1, PresetTable::kFirstMode), "LSB");
  form.optDefFreqs[2].UserPress(1);
  EXPECT_EQ(form.cmbPresetMode.text.Get(), "USB");

  for (const auto& [text, written, said] :
       {std::tuple{"1e9", "", "Not sent: outside 10 kHz to 2 GHz"},
        {"99999999999", "", "Not sent: outside 10 kHz to 2 GHz"},
        {"-7000", "", ""},
        {"10", "", ""},
        {"7074.5 FT8", "Freq 7074500 ", "Updating VFO..."}}) {
    presets.Cell(1, PresetTable::kFirstFrequency + 2) = text;
    form.lblMessage.caption = "";
    form.optBandsFreq[1].UserPress(1);
    EXPECT_EQ(Written(), written) << text;
    EXPECT_EQ(form.lblMessage.caption.Get(), said) << text;
  }
  program->panel.UpdatePresets(0, 0, true);
  EXPECT_EQ(presets.SelectedBand + presets.SelectedPreset, 0);
  EXPECT_EQ(form.optDefFreqs[0].caption.Get(), "1800");
}

TEST_F(PanelTest, TheRightButtonEdits) {
  form.optBandsFreq[4].UserPress(2);
  EXPECT_EQ(prompts.inputAsked.title, "Set Preset Band Title");
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
  struct Row {
    std::string caption, frequency, proposed, typed, kept;
  };
  for (const Row& row : {Row{"P3", "14.074.00", "14074", "7074.5 kHz", "7074.5"},
                         {"10", "14.074.00", "10", "10", "10"},
                         {"14200", "14.074.00", "14200", "nonsense", "14200"},
                         {"P3", "N/A", "N/A", "14.074.00", "14074"},
                         {"P3", ".475.00", "475", "7,0745", "7074.5"}}) {
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
    EXPECT_EQ(form.optDefFreqs[2].caption.Get(), row.kept);
  }
}

TEST_F(PanelTest, StepsAndManualEntryWriteTheRig) {
  rig1.SetFreq(14074000);
  Written();
  const std::vector<int32_t> expected{14073990, 14072990, 13072990, 14072990, 14073990, 14074000};
  for (int32_t i = 0; i < 6; ++i) {
    form.cmdFreqSteps[i].Click();
    EXPECT_EQ(Written(), "Freq " + std::to_string(expected[static_cast<size_t>(i)]) + " ");
  }
  for (const auto& [typed, written] : {std::pair{" 7074", "Freq 7074000 "},
                                       {"7.0745", "Freq 7074500 "},
                                       {"7 074.5 kHz", "Freq 7074500 "},
                                       {"14,074.5", "Freq 14074500 "},
                                       {"14.074.125", "Freq 14074125 "},
                                       {"1.2.3", ""},
                                       {"1.296.200.00", ""},
                                       {"14.250.00", "Freq 14250000 "},
                                       {"abc", ""},
                                       {"10", ""}}) {
    form.txtManualFrequency.UserText(typed);
    form.txtManualFrequency.UserEnter();
    EXPECT_EQ(Written(), written) << typed;
  }
  EXPECT_EQ(program->panel.ManualFrequencyKHz, 14250);
  form.txtManualFrequency.UserText("7100");
  form.cmdokman.Click();
  EXPECT_EQ(Written(), "Freq 7100000 ");
  Reachable(false);
  form.cmdFreqSteps[0].Click();
  EXPECT_EQ(Written(), "");
}

TEST_F(PanelTest, ItIsShownAndHiddenBesideTheDisplay) {
  const int32_t scope = form.Scope.scaleWidth;
  for (const bool shown : {true, false, true}) {
    if (form.mnuExpandedRigControl.checked != shown) form.mnuExpandedRigControl.Click();
    EXPECT_EQ(form.chkExpand.caption.Get(), shown ? "<" : ">");
    EXPECT_EQ(form.Window.widthTwips, shown ? 13140 : 8385);
    EXPECT_EQ(form.picExpand.visible, shown);
    EXPECT_EQ(form.optBandsFreq[9].place.Get().width > 0, shown);
    EXPECT_EQ(form.Scope.scaleWidth, scope);
  }
}

}  // namespace
}  // namespace velt

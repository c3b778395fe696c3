// The setup dialog in the whole program over doubles.
#include "shell/setup_dialog.h"

#include <gtest/gtest.h>

#include <sstream>

#include "presets/preset_text.h"
#include "support/doubles.h"

namespace velt {
namespace {

using Texts = std::vector<std::string>;

struct SetupDialogTest : testing::Test, ProgramFixture {
  void Open() {
    Form().Window.keyDown.Raise(kKeyF9);
    form = &program->setupForm;
    EXPECT_TRUE(form->Window.visible);
  }
  std::array<TextBox*, 5> Fields() {
    return {&form->Text1, &form->Text2, &form->Text3, &form->Text4, &form->Text5};
  }
  std::string Shown() {
    std::string shown;
    for (const TextBox* field : Fields()) shown += field->text.Get() + " ";
    for (const ListBox* list : {&form->Combo1, &form->Combo2, &form->Combo3, &form->Combo4}) {
      shown += std::to_string(list->listIndex) + " ";
    }
    return shown;
  }
  // Into the fields what stands between the bars.
  void Type(const std::string& texts) {
    std::istringstream parts(texts);
    std::string text;
    for (TextBox* field : Fields()) {
      std::getline(parts, text, '|');
      field->UserText(text);
    }
  }
  std::string Saved() {
    program->settings.SaveRegistryStuff();
    std::string saved;
    for (const char* key :
         {"SpectrumSensitivity", "OscillosSensitivity", "MeterSensitivity", "Clearity",
          "WaterSpeed", "Precision", "RecSampleRate", "WaterGrey", "ScanFreq"}) {
      saved += Stored(key) + " ";
    }
    return saved;
  }
  // Another one, started.
  void Again() {
    Restart();
    Start();
  }
  SetupForm* form = nullptr;
};

TEST_F(SetupDialogTest, OnlyOKPutsEverythingIntoForceAtOnce) {
  Reachable(true);
  files.files["/opt/engine/RS232.cfg"] = "3\n9600\nN\n8\n1\n0\nNONE\nCOM\nDTR\n";
  Start();
  Open();
  EXPECT_FALSE(Form().Window.topMost);
  EXPECT_EQ(Shown(), "10 1 4 10 3 0 2 1 0 ");
  EXPECT_EQ(Told(form->Window.forwardWanted, [&] { Open(); }), 1);

  Form().mnuPTT_ON.Click();
  EXPECT_TRUE(serialPort.Lines());
  files.files["/opt/engine/RS232.cfg"] = "3\n9600\nN\n8\n1\n0\nNONE\nCOM\nRTS\n";
  const auto fill = [&] {
    Type("100|0,5|2.25|0|10");
    form->Combo1.UserPick(2);
    form->Combo2.UserPick(0);
    form->Combo3.UserPick(5);
    form->Combo4.UserPick(1);
  };
  for (const auto& leave : {std::function([&] { form->Command2.Click(); }),
                            {[&] { form->Window.closeAsked.Raise(); }}}) {
    fill();
    leave();
    EXPECT_FALSE(form->Window.visible);
    EXPECT_TRUE(Form().Window.topMost);
    EXPECT_EQ(Saved(), "10 1 4 10 3 1 44100 1 25 ");
    Open();
    EXPECT_EQ(Shown(), "10 1 4 10 3 0 2 1 0 ");
  }
  EXPECT_TRUE(serialPort.Lines());
  fill();
  serialPort.Take();
  form->Command3.Click();
  EXPECT_FALSE(form->Window.visible);
  EXPECT_EQ(Saved(), "100 0.5 2.25 0 10 3 11025 5 50 ");
  EXPECT_EQ(program->display.options.analysis.spectrumDivisor, 15 * 100);
  EXPECT_EQ(program->display.options.palette[262].Argb(), 0xFF00FF00U) << "the rainbow";
  EXPECT_EQ(serialPort.Take(), (Texts{"DTR down", "close"})) << "as it was keyed";
  StartCapture();
  EXPECT_EQ(Form().Timer1.interval, 50);

  // The menu's choice beside the dialog holds, and so does what no list has.
  program->display.options.waterGrey = 7;
  program->carried.recSampleRateHz = 8000;
  Open();
  EXPECT_EQ(Shown(), "100 0.5 2.25 0 10 2 -1 -1 1 ");
  Form().mnuprecision[4].Click();
  form->Command3.Click();
  EXPECT_EQ(Saved(), "100 0.5 2.25 0 10 4 8000 7 50 ");
}

TEST_F(SetupDialogTest, WhatCannotBeTakenIsToldAndChangesNothing) {
  const std::string value = "Error entered value", text = "Err values 13";
  Start();
  Open();
  int focused = 0;
  Connections listening;
  for (int i = 1; TextBox * each : Fields()) {
    listening += each->focusWanted.Listen([&focused, i] { focused = i; });
    ++i;
  }
  // The field that gets the keyboard, 0 for none: everything was taken.
  using Row = std::tuple<const char*, std::string, int>;
  for (const auto& [typed, title, field] :
       {Row{"0|1|1|1|1", value, 1}, Row{"101|1|1|1|1", value, 1}, Row{"0.4|1|1|1|1", value, 1},
        Row{"1|25|1|1|1", value, 2}, Row{"1|20.01|1|1|1", value, 2}, Row{"1|1e-60|1|1|1", value, 2},
        Row{"1|1|50,5|1|1", value, 3}, Row{"0|1|-1|1|1", value, 3}, Row{"1|1|1|-0.2|1", value, 4},
        Row{"1|1|1|99.3|1", value, 4}, Row{"0|0|0|100|0", value, 5}, Row{"1|1|1|1|10.2", value, 5},
        Row{"|1|1|1|0", text, 1}, Row{"1|1.000,5|1|1|1", text, 2}, Row{"0|1|1|ten|1", text, 4},
        Row{"1|1|1|1|5 s", text, 5}, Row{" 1 |20|50|99|0.6", "", 0}}) {
    SCOPED_TRACE(typed);
    focused = 0;
    prompts.told.clear();
    Type(typed);
    form->Combo4.UserPick(1);
    form->Command3.Click();
    EXPECT_EQ(focused, field);
    EXPECT_EQ(form->Window.visible, field > 0);
    EXPECT_EQ(prompts.told.size(), field > 0 ? 1U : 0U);
    if (field == 0) break;
    EXPECT_EQ(prompts.told.back().title, title);
    EXPECT_EQ(prompts.told.back().text,
              title == value ? "Please enter the correct value(s), or check the decimal sign..."
                             : "Please check entered values, check decimal separator...\r\n"
                               "Invalid use of characters or values.");
    EXPECT_EQ(Saved(), "10 1 4 10 3 1 44100 1 25 ");
  }
  EXPECT_EQ(Saved(), "1 20 50 99 1 1 44100 1 50 ");
}

TEST_F(SetupDialogTest, TheSoundInputIsChosenAndKept) {
  audio.devices = {{"usb", "USB Audio"}, {"usb.2", "USB Audio"}, {"pci", "Line In"}};
  const auto choose = [&](int32_t index) {
    form->cmbDevices.UserPick(index);
    form->Command3.Click();
    scheduler.RunPosted();
  };
  Start();
  Open();
  EXPECT_EQ(audio.lookedFor, 1);
  EXPECT_EQ(form->cmbDevices.items.Get(),
            (Texts{"System default", "USB Audio, usb", "USB Audio, usb.2", "Line In"}));
  EXPECT_EQ(form->cmbDevices.listIndex, 0);
  choose(3);
  EXPECT_TRUE(audio.opened.empty());
  EXPECT_EQ(Form().lblListen.caption.Get(), "Press \u25B6 to listen to Line In");
  StartCapture();
  Open();
  choose(2);
  EXPECT_EQ(audio.opened, (Texts{"pci", "usb.2"}));
  EXPECT_TRUE(program->capture.Capturing());
  Open();
  choose(2);
  EXPECT_EQ(audio.opened.size(), 2U);
  audio.Tell(AudioEvent::Kind::Lost, "gone");
  scheduler.RunPosted();
  EXPECT_TRUE(audio.watching);
  Open();
  choose(3);
  EXPECT_TRUE(!audio.watching && program->capture.Capturing());
  EXPECT_EQ(Form().lblNotice.caption.Get(), "");
  Close();

  // What is gone stays chosen, and what comes is offered while the dialog is open.
  const std::vector<AudioDevice> there = std::exchange(audio.devices, {});
  Again();
  Open();
  EXPECT_EQ(form->cmbDevices.items.Get(), (Texts{"System default", "Line In"}));
  audio.devices = {there[0]};
  scheduler.Advance(Milliseconds(600));
  EXPECT_EQ(form->cmbDevices.items.Get(),
            (Texts{"System default", "USB Audio", "Line In (not there)"}));
  EXPECT_EQ(form->cmbDevices.listIndex, 2);
  form->Command3.Click();
  audio.opened.clear();
  StartCapture();
  EXPECT_EQ(audio.opened, Texts{"pci"});

  // The command line's holds for its run only, unless another is chosen.
  setup.audioDevice = "usb";
  for (const bool chosen : {false, true}) {
    Again();
    Open();
    EXPECT_EQ(form->cmbDevices.listIndex, 1);
    choose(chosen ? 0 : 1);
    Close();
    EXPECT_EQ(store.Get("Audio", "Device"), chosen ? "" : "pci");
  }
}

TEST_F(SetupDialogTest, LeadsToTheOtherDialogs) {
  Reachable(true);
  Start();
  Open();
  const std::string caption = Form().Window.caption;
  EXPECT_NE(caption.find(" - Rig "), std::string::npos);
  form->Command1.Click();
  EXPECT_TRUE(program->colorsForm.Window.visible);
  form->cmdFreqs.Click();
  EXPECT_TRUE(program->bandsForm.Window.visible);
  form->cmdSetpOmniRig.Click();
  EXPECT_TRUE(program->catForm.Window.visible);
  Form().Window.caption = "VELT-SA";
  program->catForm.Command1.Click();
  EXPECT_EQ(Form().Window.caption.Get(), caption);
  EXPECT_FALSE(Form().Window.topMost);
  launcher.installed = {"pavucontrol"};
  form->Command5.Click();
  EXPECT_EQ(launcher.commands, (std::vector<Texts>{{"pavucontrol", "--tab=4"}}));
  Close();
  EXPECT_FALSE(form->Window.visible);
}

TEST_F(SetupDialogTest, AResetEndsTheProgramWithoutSavingAndWithTheTransmitterReleased) {
  Reachable(true);
  rig1.AnswerAfter(Milliseconds(0));
  const std::filesystem::path presetFile = "/home/om/VELT/ExpandPresets.ini";
  // How the program ends then: the box is dismissed, or the window is closed below it.
  for (const bool dismissed : {true, false}) {
    store.Save("VELT-SA", "Slider", "33");
    store.Save("Audio", "Device", "usb");
    Again();
    Open();
    StartCapture();
    Form().imgRecOnOff[0].Click();
    program->presets.Cell(0, 0) = "mine";
    Form().mnuPTT_ON.Click();
    scheduler.Advance(Milliseconds(2000));
    EXPECT_TRUE(rig1.Transmits());
    form->Command4.Click();
    EXPECT_EQ(prompts.asked.back().text,
              "Are you sure to reset all values to their default settings?");
    const auto answer = prompts.answer;
    answer(false);
    EXPECT_EQ(Stored("Slider"), "33");
    answer(true);
    EXPECT_EQ(prompts.told.back().text, "All setting now restored. VELT-SA will now close.");
    EXPECT_EQ(program->presets.Cell(0, 0), "160m");
    EXPECT_EQ(Form().mnuBands[0].caption.Get(), "160m");
    EXPECT_FALSE(ended);
    recorder.Take();
    dismissed ? prompts.dismiss() : static_cast<void>(Close());
    scheduler.RunPosted();
    EXPECT_TRUE(ended);
    EXPECT_FALSE(rig1.Transmits());
    EXPECT_EQ(recorder.Take().back(), "close");
    EXPECT_EQ(Stored("Slider") + store.Get("Audio", "Device").value_or(""), "(missing)");
    EXPECT_FALSE(files.files.contains(presetFile)) << "the user's own are not written over";
  }
}

}  // namespace
}  // namespace velt

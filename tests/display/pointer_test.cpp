// The mouse on the display and the keys of the window: readout, tuning, sideband and snapshots, in
// the whole program over doubles.
#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

struct PointerTest : testing::Test, ProgramFixture {
  PointerTest() {
    files.files["/opt/engine/velt.jar"] = "";
    Reachable(true);
    Restart();
    Start();
    StartCapture();
    scheduler.RunPosted();
    Form().Scope.scaleWidth = 524;
    rig1.SetFreq(14074000);
    scheduler.Advance(Milliseconds(400));
    writes1.Take();
  }
  std::string Shown() {
    return Form().lblFreq.caption.Get() + " " + Form().lblDelta.caption.Get() + " " +
           Form().lblCursor.caption.Get();
  }
  std::string Written() {
    std::string all;
    for (const std::string& write : writes1.Take()) all += write + " ";
    return all;
  }
};

TEST_F(PointerTest, TheReadoutFollowsModeOffsetAndWaterfall) {
  Main& form = Form();
  struct Row {
    int mode;
    int16_t scaleOffset;
    bool waterfall;
    int x;
    std::string shown;
  };
  for (const Row& row : {Row{0, 300, false, 100, "4198Hz 419 14078.19"},
                         {0, 0, false, 0, "0Hz 00 14074.00"},
                         {0, 0, true, 100, "4.198 kHz 419 14078.19"},
                         // A negative readout leaves the former one's tens.
                         {1, 0, false, 100, "-7802Hz 419 "},
                         {1, -100, true, 400, "4894Hz 489 14078.89"},
                         {69, 200, false, 500, "4281Hz 428 14078.28"},
                         {69, 0, false, 0, "-6015Hz 428 "}}) {
    form.mnuzokamodes[row.mode].Click();
    form.chkSpecMode.UserPick(row.waterfall);
    program->rig.engine.scaleOffset = row.scaleOffset;
    form.Scope.UserMove(row.x);
    EXPECT_EQ(Shown(), row.shown);
  }
  EXPECT_FALSE(form.lblDelta.visible) << "an older place's";
  form.Scope.UserMove(500);
  form.lblFrequency.caption = "7.000.00";
  EXPECT_EQ(form.lblCursor.caption.Get(), "7004.48") << "tuned below a cursor at rest";
  form.lblFrequency.caption = "N/A";
  EXPECT_EQ(form.lblCursor.caption.Get(), "") << "a frequency that nobody knows";
  form.Scope.scaleWidth = 0;
  form.Scope.UserMove(3);

  scheduler.Advance(Milliseconds(3000));
  EXPECT_TRUE(form.lblFreq.visible);
  program->messages.Show("In its place");
  EXPECT_FALSE(form.lblFreq.visible || form.lblCursor.visible);
}

TEST_F(PointerTest, ClicksTuneOnlyWhereTheyShould) {
  Main& form = Form();
  const auto click = [&](int x) { form.Scope.UserPress(1, x); };
  struct Row {
    const char* what;
    std::function<void()> prepare;
    std::string written;
    std::string said;
  };
  const std::string none;
  for (const Row& row : {
           Row{"running", [] {}, "Freq 14078198 ", "Updating VFO..."},
           {"waterfall", [&] { form.chkSpecMode.UserPick(true); }, "Freq 14078198 ",
            "Updating VFO..."},
           {"offset", [&] { program->rig.state.offsetKHz = 10; }, "Freq 14068198 ",
            "Updating VFO..."},
           {"offset that wraps", [&] { program->rig.state.offsetKHz = 33; }, "Freq 14110734 ",
            "Updating VFO..."},
           {"too high", [&] { form.lblFrequency.caption = "2.100.000.00"; }, none,
            "Not sent: outside 10 kHz to 2 GHz"},
           {"too low", [&] { form.lblFrequency.caption = "..10"; }, none,
            "Not sent: outside 10 kHz to 2 GHz"},
           {"no frequency", [&] { form.lblFrequency.caption = "N/A"; }, none,
            "No frequency is shown: nothing was sent"},
           {"mode 1", [&] { form.mnuzokamodes[1].Click(); }, none, none},
           {"mode 69", [&] { form.mnuzokamodes[69].Click(); }, none, none},
           {"stopped", [&] { form.imgStartStop.Click(); }, none, none},
           {"link lost", [&] { Reachable(false); }, none, "No link to the rig: nothing was sent"},
       }) {
    SCOPED_TRACE(row.what);
    form.chkSpecMode.UserPick(false);
    form.mnuzokamodes[0].Click();
    program->rig.state.offsetKHz = 0;
    if (form.imgStartStop.tag.Get() == "Play") StartCapture();
    form.lblFrequency.caption = "14.074.00";
    row.prepare();
    form.lblMessage.caption = "";
    click(100);
    EXPECT_EQ(Written(), row.written);
    EXPECT_EQ(form.lblMessage.caption.Get(), row.said);
    rig1.SetFreq(14074000);
    writes1.Take();
  }
}

TEST_F(PointerTest, ThePeakIsTakenInTensOfHertz) {
  Main& form = Form();
  form.lblFreqDetect.caption = "14.075.23kc";
  form.lblFreqDetect.Click();
  EXPECT_EQ(Written(), "Freq 14075230 ");
  form.lblFreqDetect.caption = "no peak";
  form.lblFreqDetect.Click();
  EXPECT_EQ(Written(), "");
}

TEST_F(PointerTest, TheRightButtonSendsTheSidebandOfItsHalf) {
  engineWindow.Open(program->installation.EngineTitle());
  const int centre = Form().Scope.verticalGrid.Get()[5].x1;
  scheduler.Advance(Milliseconds(2000));
  engineWindow.Take();
  for (const auto& [x, keys] : {std::pair{centre - 4, "(^l)"},
                                {centre - 3, "(^w)"},
                                {centre + 3, "(^w)"},
                                {centre + 4, "(^u)"}}) {
    Form().Scope.UserPress(2, x);
    scheduler.Advance(Milliseconds(10));
    EXPECT_EQ(engineWindow.Take(), "up, up, " + std::string(keys) + ", " + keys);
  }
  program->installation.enginePresent = false;
  Form().Scope.UserPress(2, 0);
  scheduler.Advance(Milliseconds(10));
  EXPECT_EQ(engineWindow.Take(), "");
  EXPECT_EQ(Written(), "");
}

TEST_F(PointerTest, KeysStepTheRigAndReachTheMenus) {
  Main& form = Form();
  const auto press = [&](int32_t key) { form.Window.keyDown.Raise(key); };
  for (const auto& [key, hertz] : {std::pair{kKeyLeft, 14073990},
                                   {kKeyRight, 14074000},
                                   {kKeyUp, 14075000},
                                   {kKeyDown, 14074000},
                                   {kKeyPageDown, 13074000},
                                   {kKeyPageUp, 13074000},
                                   {kKeyHome, 13074000},
                                   {kKeyEnd, 13074000}}) {
    const bool writes = rig1.Freq() != hertz;
    press(key);
    EXPECT_EQ(Written(), writes ? "Freq " + std::to_string(hertz) + " " : "") << key;
  }
  // Home shows the rig again; Page Up does nothing at all.
  for (const auto& [key, shown] : {std::pair{kKeyPageUp, "1.000.00"}, {kKeyHome, "13.074.00"}}) {
    form.lblFrequency.caption = "1.000.00";
    press(key);
    EXPECT_EQ(form.lblFrequency.caption.Get(), shown);
  }
  for (int i = 0; i < 20; ++i) press(kKeyRight);
  EXPECT_EQ(rig1.Freq(), 13074200);
  EXPECT_EQ(form.lblFrequency.caption.Get(), "13.074.20");
  Written();
  form.lblFrequency.caption = "N/A";
  press(kKeyUp);
  EXPECT_EQ(Written(), "");

  std::string reached;
  for (const auto& [item, name] : {std::pair{&form.mnusavebmp, "save "},
                                   {&form.mnucopy, "copy "},
                                   {&form.mnusetupcalib, "setup "},
                                   {&form.mnurunzoka, "run "},
                                   {&form.mnuclosezoka, "close "}}) {
    connections += item->clicked.Listen([&reached, text = name] { reached += text; });
  }
  for (const int32_t key : {kKeyF2, kKeyF5, kKeyF9, kKeyF11, kKeyF12}) press(key);
  EXPECT_EQ(reached, "save copy setup run close ");
}

TEST_F(PointerTest, SnapshotsHoldTheWholeDisplay) {
  Main& form = Form();
  program->installation.dataFolder = "/data";
  files.folders.insert("/data/BMP");
  form.Scope.scaleWidth = 3;  // a row of nine bytes is filled up to twelve
  form.Scope.scaleHeight = 1;
  program->display.tick.Timer1_Timer();
  form.StopButton.Click();
  form.Scope.scaleHeight = 2;  // what is not drawn yet has the colour of the ground
  program->display.options.analysis.background = Colour(0x030201);
  form.mnusavebmp.Click();
  EXPECT_EQ(form.lblMessage.caption.Get(), "Saving...\\BMP\\VELTSA_26-03-07_09.05.01.bmp....");
  const std::string bmp = files.files["/data/BMP/VELTSA_26-03-07_09.05.01.bmp"];
  ASSERT_EQ(bmp.size(), 54U + 24U);
  EXPECT_EQ(bmp.substr(0, 6), std::string("BM\x4E\0\0\0", 6));
  const std::string ground("\3\2\1\3\2\1\3\2\1\0\0\0", 12);
  EXPECT_EQ(bmp.substr(54, 12), ground) << "the lowest row comes first";
  EXPECT_NE(bmp.substr(66, 12), ground);
  EXPECT_EQ(files.files["/data/BMP/VELTSA_26-03-07_09.05.01.png"], "3");

  form.mnuzokamodes[1].Click();
  form.Scope.UserRelease(2);
  EXPECT_TRUE(pictures.clipboard.empty());
  form.mnuzokamodes[0].Click();
  form.Scope.UserRelease(1);
  EXPECT_TRUE(pictures.clipboard.empty());
  form.Scope.UserRelease(2);
  EXPECT_EQ(pictures.clipboard.size(),
            static_cast<size_t>(form.Scope.scaleWidth * form.Scope.scaleHeight));
  EXPECT_EQ(form.lblMessage.caption.Get(), "Spectrum image copied to the Clipboard");

  files.writable = false;
  form.mnusavebmp.Click();
  ASSERT_EQ(prompts.told.size(), 1U);
  EXPECT_EQ(prompts.told[0].text, "Error saving spectrum display bmp");
  EXPECT_EQ(prompts.told[0].title, "Error nr:13");
  form.mnuopenbmp.Click();
  EXPECT_EQ(launcher.opened.back(), "/data/BMP");
}

}  // namespace
}  // namespace velt

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
    Start();
    StartCapture();
    form.Scope.scaleWidth = 524;
    rig1.SetFreq(14074000);
    scheduler.Advance(Milliseconds(400));
    writes1.Take();
  }
  std::string Written() {
    std::string all;
    for (const std::string& write : writes1.Take()) all += write + " ";
    return all;
  }
  Main& form = program->form;
};

TEST_F(PointerTest, TheReadoutFollowsModeOffsetAndWaterfall) {
  using Row = std::tuple<int, int16_t, bool, int, std::string>;
  for (const auto& [mode, scaleOffset, waterfall, x, shown] :
       {Row{0, 300, false, 100, "4198Hz 419 14078.19"}, Row{0, 0, false, 0, "0Hz 00 14074.00"},
        Row{0, 0, true, 100, "4.198 kHz 419 14078.19"},
        // A negative readout leaves the former one's tens.
        Row{1, 0, false, 100, "-7802Hz 419 "}, Row{1, -100, true, 400, "4894Hz 489 14078.89"},
        Row{69, 200, false, 500, "4281Hz 428 14078.28"}, Row{69, 0, false, 0, "-6015Hz 428 "}}) {
    form.mnuzokamodes[mode].Click();
    form.chkSpecMode.UserPick(waterfall);
    program->rig.engine.scaleOffset = scaleOffset;
    form.Scope.UserMove(x);
    EXPECT_EQ(form.lblFreq.caption.Get() + " " + form.lblDelta.caption.Get() + " " +
                  form.lblCursor.caption.Get(),
              shown);
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
  const std::string none, tuned = "Updating VFO...";
  const std::string outside = "Not sent: outside 10 kHz to 2 GHz";
  using Row = std::tuple<const char*, std::function<void()>, std::string, std::string>;
  const auto offset = [&](int kHz) {
    return [&, kHz] { program->rig.state.offsetKHz = static_cast<int16_t>(kHz); };
  };
  const auto shown = [&](const char* text) {
    return [&, text] { form.lblFrequency.caption = text; };
  };
  for (const auto& [what, prepare, written, said] :
       {Row{"running", [] {}, "Freq 14078198 ", tuned},
        {"waterfall", [&] { form.chkSpecMode.UserPick(true); }, "Freq 14078198 ", tuned},
        {"offset", offset(10), "Freq 14068198 ", tuned},
        {"offset that wraps", offset(33), "Freq 14110734 ", tuned},
        {"too high", shown("2.100.000.00"), none, outside},
        {"too low", shown("..10"), none, outside},
        {"no frequency", shown("N/A"), none, "No frequency is shown: nothing was sent"},
        {"mode 1", [&] { form.mnuzokamodes[1].Click(); }, none, none},
        {"mode 69", [&] { form.mnuzokamodes[69].Click(); }, none, none},
        {"stopped", [&] { form.imgStartStop.Click(); }, none, none},
        {"link lost", [&] { Reachable(false); }, none, "No link to the rig: nothing was sent"}}) {
    SCOPED_TRACE(what);
    form.chkSpecMode.UserPick(false);
    form.mnuzokamodes[0].Click();
    program->rig.state.offsetKHz = 0;
    if (form.imgStartStop.tag.Get() == "Play") StartCapture();
    form.lblFrequency.caption = "14.074.00";
    prepare();
    form.lblMessage.caption = "";
    form.Scope.UserPress(1, 100);
    EXPECT_EQ(Written(), written);
    EXPECT_EQ(form.lblMessage.caption.Get(), said);
    rig1.SetFreq(14074000);
    writes1.Take();
  }
}

TEST_F(PointerTest, ThePeakIsTakenInTensOfHertz) {
  for (const auto& [peak, written] : {std::pair{"14.075.23kc", "Freq 14075230 "}, {"none", ""}}) {
    form.lblFreqDetect.caption = peak;
    form.lblFreqDetect.Click();
    EXPECT_EQ(Written(), written);
  }
}

TEST_F(PointerTest, TheRightButtonSendsTheSidebandOfItsHalf) {
  engineWindow.Open(program->installation.EngineTitle());
  const int centre = form.Scope.verticalGrid.Get()[5].x1;
  scheduler.Advance(Milliseconds(2000));
  engineWindow.Take();
  for (const auto& [x, keys] : {std::pair{centre - 4, "(^l)"}, std::pair{centre - 3, "(^w)"},
                                std::pair{centre + 3, "(^w)"}, std::pair{centre + 4, "(^u)"}}) {
    form.Scope.UserPress(2, x);
    scheduler.Advance(Milliseconds(10));
    EXPECT_EQ(engineWindow.Take(), "up, up, " + std::string(keys) + ", " + keys);
  }
  program->installation.enginePresent = false;
  form.Scope.UserPress(2, 0);
  scheduler.Advance(Milliseconds(10));
  EXPECT_EQ(engineWindow.Take(), "");
  EXPECT_EQ(Written(), "");
}

TEST_F(PointerTest, KeysStepTheRigAndReachTheMenus) {
  const auto press = [&](int32_t key) { form.Window.keyDown.Raise(key); };
  for (const auto& [key, hertz] :
       {std::pair{kKeyLeft, 14073990}, std::pair{kKeyRight, 14074000}, std::pair{kKeyUp, 14075000},
        std::pair{kKeyDown, 14074000}, std::pair{kKeyPageDown, 13074000},
        std::pair{kKeyPageUp, 13074000}, std::pair{kKeyHome, 13074000},
        std::pair{kKeyEnd, 13074000}}) {
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
  for (const auto& [item, name] :
       {std::pair{&form.mnusavebmp, "save "}, std::pair{&form.mnucopy, "copy "},
        std::pair{&form.mnusetupcalib, "setup "}, std::pair{&form.mnurunzoka, "run "},
        std::pair{&form.mnuclosezoka, "close "}}) {
    connections += item->clicked.Listen([&reached, text = name] { reached += text; });
  }
  for (const int32_t key : {kKeyF2, kKeyF5, kKeyF9, kKeyF11, kKeyF12}) press(key);
  EXPECT_EQ(reached, "save copy setup run close ");
}

TEST_F(PointerTest, SnapshotsHoldTheWholeDisplay) {
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

  for (const auto& [mode, button, copies] :
       {std::tuple{1, 2, false}, {0, 1, false}, {0, 2, true}}) {
    form.mnuzokamodes[mode].Click();
    form.Scope.UserRelease(button);
    EXPECT_EQ(pictures.clipboard.size(), copies ? 6U : 0U);
  }
  EXPECT_EQ(form.lblMessage.caption.Get(), "Spectrum image copied to the Clipboard");

  files.writable = false;
  form.mnusavebmp.Click();
  EXPECT_EQ(prompts.told.at(0).text, "Error saving spectrum display bmp");
  EXPECT_EQ(prompts.told.at(0).title, "Error nr:13");
  form.mnuopenbmp.Click();
  EXPECT_EQ(launcher.opened.back(), "/data/BMP");
}

}  // namespace
}  // namespace velt

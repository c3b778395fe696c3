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
  const std::string carrier = "14.074.00", tuned = "Updating VFO...";
  const std::string outside = "Not sent: outside 10 kHz to 2 GHz";
  form.mnuzokamodes[0].Click();
  // What the rig is at, the offset in kHz (one that wraps, too), whether over the waterfall.
  using Row = std::tuple<std::string, int16_t, bool, std::string, std::string>;
  for (const auto& [shown, offsetKHz, waterfall, written, said] :
       {Row{carrier, 0, false, "Freq 14078198 ", tuned},
        Row{carrier, 0, true, "Freq 14078198 ", tuned},
        Row{carrier, 10, false, "Freq 14068198 ", tuned},
        Row{carrier, 33, false, "Freq 14110734 ", tuned},
        Row{"2.100.000.00", 0, false, "", outside}, Row{"..10", 0, false, "", outside},
        Row{"N/A", 0, false, "", "No frequency is shown: nothing was sent"}}) {
    form.chkSpecMode.UserPick(waterfall);
    program->rig.state.offsetKHz = offsetKHz;
    form.lblFrequency.caption = shown;
    form.Scope.UserPress(1, 100);
    EXPECT_EQ(writes1.TakeLine(), written);
    EXPECT_EQ(form.lblMessage.caption.Get(), said) << shown;
    rig1.SetFreq(14074000);
    writes1.Take();
  }
  form.lblFrequency.caption = carrier;
  for (const int mode : {1, 69, 0}) {
    form.mnuzokamodes[mode].Click();
    if (mode == 0) form.imgStartStop.Click();  // stopped
    form.Scope.UserPress(1, 100);
  }
  StartCapture();
  Reachable(false);
  form.Scope.UserPress(1, 100);
  EXPECT_EQ(writes1.TakeLine(), "");
  EXPECT_EQ(form.lblMessage.caption.Get(), "No link to the rig: nothing was sent");
  Reachable(true);
  scheduler.Advance(Milliseconds(4000));
  for (const char* peak : {"14.075.23kc", "none"}) {
    form.lblFreqDetect.caption = peak;
    form.lblFreqDetect.Click();
  }
  EXPECT_EQ(writes1.TakeLine(), "Freq 14075230 ");
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
}

TEST_F(PointerTest, KeysStepTheRigAndReachTheMenus) {
  const auto press = [&](int32_t key) { form.Window.keyDown.Raise(key); };
  for (const int32_t key :
       {kKeyLeft, kKeyRight, kKeyUp, kKeyDown, kKeyPageUp, kKeyHome, kKeyEnd, kKeyPageDown}) {
    press(key);
  }
  EXPECT_EQ(writes1.TakeLine(),
            "Freq 14073990 Freq 14074000 Freq 14075000 Freq 14074000 Freq 13074000 ");
  // Home shows the rig again; Page Up does nothing at all.
  for (const auto& [key, shown] : {std::pair{kKeyPageUp, "1.000.00"}, {kKeyHome, "13.074.00"}}) {
    form.lblFrequency.caption = "1.000.00";
    press(key);
    EXPECT_EQ(form.lblFrequency.caption.Get(), shown);
  }
  for (int i = 0; i < 20; ++i) press(kKeyRight);
  EXPECT_EQ(form.lblFrequency.caption.Get(), "13.074.20");
  form.lblFrequency.caption = "N/A";
  press(kKeyUp);
  EXPECT_EQ(rig1.Freq(), 13074200);

  for (const auto& [key, item] :
       {std::pair{kKeyF2, &form.mnusavebmp}, std::pair{kKeyF5, &form.mnucopy},
        std::pair{kKeyF9, &form.mnusetupcalib}, std::pair{kKeyF11, &form.mnurunzoka},
        std::pair{kKeyF12, &form.mnuclosezoka}}) {
    EXPECT_EQ(Told(item->clicked, [&press, pressed = key] { press(pressed); }), 1) << key;
  }
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
  const std::string bmp = files.files["/data/BMP/VELTSA_26-03-07_09.05.01.bmp"];
  ASSERT_EQ(bmp.size(), 54U + 24U);
  const std::string ground("\3\2\1\3\2\1\3\2\1\0\0\0", 12);
  EXPECT_EQ(bmp.substr(54, 12), ground) << "the lowest row comes first";
  EXPECT_NE(bmp.substr(66, 12), ground);
  for (const bool copies : {false, true}) {
    form.mnuzokamodes[copies ? 0 : 1].Click();
    form.Scope.UserRelease(2);
    EXPECT_EQ(pictures.clipboard.size(), copies ? 6U : 0U);
  }
  files.writable = false;
  form.mnusavebmp.Click();
  EXPECT_EQ(prompts.told.at(0).title, "Error nr:13");
}

}  // namespace
}  // namespace velt

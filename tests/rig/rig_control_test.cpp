#include "rig_fixture.h"

namespace velt {
namespace {

struct RigControlTest : RigFixture {
  RigControlTest() { Link(); }
  static Texts Modes(const std::vector<int32_t>& modes) {
    Texts sent;
    for (const int32_t mode : modes) sent.push_back("Mode " + std::to_string(mode));
    return sent;
  }
};

TEST_F(RigControlTest, FrequenciesGoToTheVfoLessTheOffset) {
  // Hz, VFO, offset in kHz; what is sent, nothing when it would be outside 10 kHz to 2 GHz.
  using Case = std::tuple<int32_t, int16_t, int16_t, Texts>;
  for (const auto& [hertz, vfo, offsetKHz, sent] :
       {Case{20000, 1, 0, Texts{"FreqA 20000"}}, Case{20000, 3, 0, {"FreqB 20000", "FreqA 20000"}},
        Case{20000, 0, 2, {"Freq 18000"}}, Case{20000, 0, 33, {"Freq 52536"}},
        Case{10000, 2, 0, {"FreqB 10000"}}, Case{2000000000, 0, 0, {"Freq 2000000000"}},
        Case{9999, 0, 0, {}}, Case{11000, 0, 2, {}}, Case{2000000001, 0, 0, {}},
        Case{INT32_MIN, 0, 2, {}}}) {
    rig.state.offsetKHz = offsetKHz;
    rig.control.SetTRXFrequency(hertz, vfo);
    EXPECT_EQ(writes1.Take(), sent) << hertz;
    EXPECT_EQ(Message(), sent.empty() ? "Not sent: outside 10 kHz to 2 GHz" : "Updating VFO...");
  }
}

TEST_F(RigControlTest, WhatTheRigDoesNotTakeIsToldAndNotShown) {
  rig1.RefuseWrites(true);
  for (const auto& [write, told] :
       {std::pair{std::function<void()>([this] { rig.control.Step(1000); }),
                  "The rig did not take 7.101.00"},
        {[this] { rig.control.SetTRXFrequency(3600000, 2); }, "The rig did not take 3.600.00"},
        {[this] { rig.control.SendMode(PM_AM); }, "The rig did not take the mode"}}) {
    write();
    Pass(Milliseconds(10));
    EXPECT_EQ(Message(), told);
    EXPECT_TRUE(Frequency() == "7.100.00" && form.lblMode.caption.Get() == "LSB");
  }
  EXPECT_EQ(Notice(), "");
}

TEST_F(RigControlTest, NothingIsWrittenWithoutARigOrOverALostLink) {
  const auto write = [this] {
    rig.control.SetTRXFrequency(7100000, 0);
    rig.control.SetModulationMode("USB");
  };
  form.mnuRig.Click();
  EXPECT_TRUE(form.mnuSetFreqManual.enabled && form.mnuBands[90].enabled);
  form.lblFrequencyExpand.caption = "N/A";
  EXPECT_EQ(WritesAfter(write), Texts{});
  form.lblFrequencyExpand.caption = "7.100.00";
  rig1.Vanish();
  scheduler.RunPosted();
  EXPECT_EQ(WritesAfter(write), Texts{});
  EXPECT_EQ(Message(), "No link to the rig: nothing was sent");
  form.mnuRig.Click();
  EXPECT_FALSE(form.mnuSetFreqManual.enabled || form.mnuBands[90].enabled);
  rig1.ComeBack();
  EXPECT_EQ(WritesAfter([] {}), Texts{});  // a refused write does not come later
  rig.link.StopOmniRig();
  EXPECT_EQ(WritesAfter(write), Texts{});
}

TEST_F(RigControlTest, ModesAreMappedBySourceAndSidebandFlag) {
  form.mnuModModes[3].Click();
  EXPECT_EQ(writes1.Take(), Modes({PM_CW_U}));
  constexpr int32_t kU = PM_SSB_U, kL = PM_SSB_L, kCwU = PM_CW_U, kCwL = PM_CW_L;
  // Nothing is sent for DRM, nor for CW unless it is the label's.
  using Case = std::tuple<const char*, bool, std::vector<int32_t>>;
  for (const auto& [inverted, fromLabel, sent] :
       {Case{"off", false, {kU, kL, kCwU, kCwL, PM_FM, PM_AM, PM_DIG_U}},
        {" On ", false, {kL, kU, kCwL, kCwU, PM_FM, PM_AM, PM_DIG_U}},
        {"off", true, {kL, kU, kCwU, kCwU, kCwU, PM_FM, PM_AM, PM_DIG_U}},
        {" On ", true, {kU, kL, kCwL, kCwL, kCwL, PM_FM, PM_AM, PM_DIG_U}}}) {
    rig.state.invertedSideband = inverted;
    for (const std::string text :
         {"USB", "LSB", "DRM", "CW-USB", "CW-LSB", "CW", "FM", "AM", "DIG"}) {
      form.lblMode.caption = text;
      rig.control.SetModulationMode(fromLabel ? "" : text);
    }
    EXPECT_EQ(writes1.Take(), Modes(sent)) << inverted << fromLabel;
  }
}

TEST_F(RigControlTest, AFrequencyByHandHasToBeAboveTenKilohertz) {
  rig.state.vfo = 1;
  rig1.Tune(75500);  // below 100 kHz a plain number with a fraction would be read as MHz
  scheduler.RunPosted();
  form.mnuSetFreqManual.Click();
  for (const std::string& text :
       Texts{prompts.inputAsked.initial, "10", "abc", "", "14.abc.00", "0.0005", "9999999999",
             "7101.5 kHz", "136", "14.074.00", ".475.00", "7.0745", "50,313", "99"}) {
    form.mnuSetFreqManual.Click();
    prompts.input(text);
    EXPECT_NE(Message(), "") << "what was set is told, what was refused too";
  }
  EXPECT_EQ(writes1.Take(),
            (Texts{"FreqA 75500", "FreqA 7101500", "FreqA 136000", "FreqA 14074000", "FreqA 475000",
                   "FreqA 7074500", "FreqA 50313000", "FreqA 99000"}));
}

TEST_F(RigControlTest, TheShownFrequencyAndTransmitStateFollowTheRig) {
  rig.engine.scaleOffset = 5;
  // Frequencies of receiver and transmitter, the offset in kHz; what is shown and kept, and the
  // anchor of the scale.
  for (const auto& [rx, tx, offsetKHz, expected] :
       {std::tuple{7100000, 0, 0, "7.100.00 RX 7100000 7100005"},
        {14250000, 2, 0, "14.250.00 RX 14250000 14250005"},
        {14250000, 3, 0, ".. TX 3 8"},
        {7100000, 7105000, 2, "7.107.00 TX 7105000 7107005"},
        {7100000, 0, 33, "7.067.46 RX 7100000 7067469"},
        {475009, 0, 0, ".475.00 RX 475009 475014"},
        {0, 0, 2, "RigOffLine RX 0 2005"}}) {
    rig.state.offsetKHz = static_cast<int16_t>(offsetKHz);
    rig1.Tune(rx);
    rig1.Split(tx);
    rig1.Key(tx != 0);
    Pass(std::chrono::seconds(1));
    const int32_t kept = rig.state.RealRigFrequency;
    EXPECT_EQ(form.lblFrequencyExpand.caption.Get() + " " + form.lblTRXMode.caption.Get() + " " +
                  std::to_string(kept) + " " + std::to_string(rig.state.scaleAnchorHz),
              expected);
    EXPECT_EQ(form.mnunorig.checked, kept == 0);
  }
  form.lblMode.caption = "cw-u";  // as the engine's mode is written
  form.mnuModMode.Click();
  EXPECT_TRUE(form.mnuModModes[3].checked && !form.mnuModModes[1].checked) << "CW is marked";
}

TEST_F(RigControlTest, WindowAndDialogNameModesTheirOwnWay) {
  rig.engine.modeText = "drm";
  Texts window, dialog;
  for (const int32_t mode :
       {PM_AM, PM_FM, PM_SSB_L, PM_SSB_U, PM_CW_U, PM_CW_L, PM_DIG_U, int32_t{0}}) {
    rig1.Select(mode);
    scheduler.RunPosted();
    window.push_back(form.lblMode.caption);
    dialog.push_back(dialogForm.Label6.caption);
  }
  EXPECT_EQ(window, (Texts{"AM", "FM", "LSB", "USB", "CWu", "CWl", "drm", "drm"}));
  for (int index = 0; index < 5; ++index) dialogForm.Combo1.UserPick(index);
  EXPECT_EQ(writes1.Take(), Modes({PM_SSB_L, PM_SSB_U, PM_CW_U, PM_AM, PM_FM}));
  EXPECT_EQ(dialog, (Texts{"AM", "FM", "LSB", "USB", "CW LSB", "CW USB", "Other", "drm"}));
}

}  // namespace
}  // namespace velt

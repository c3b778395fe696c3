#include "rig_fixture.h"

namespace velt {
namespace {

using RigControlTest = RigFixture;
using RigDisplayTest = RigFixture;

TEST_F(RigControlTest, FrequenciesGoToTheVfoLessTheOffset) {
  Link();
  using Wish = std::tuple<int32_t, int16_t, int16_t>;  // Hz, VFO, offset in kHz
  const auto sent = [this](const std::string& message, const std::vector<Wish>& wishes) {
    for (const auto& [hertz, vfo, offsetKHz] : wishes) {
      rig.state.offsetKHz = offsetKHz;
      rig.control.SetTRXFrequency(hertz, vfo);
      EXPECT_EQ(Message(), message);
    }
    return writes1.Take();
  };
  EXPECT_EQ(
      sent("Updating VFO...", {{7100000, 1, 0}, {7100000, 2, 0}, {7100000, 3, 0}, {7100000, 4, 0}}),
      (Texts{"FreqA 7100000", "FreqB 7100000", "FreqB 7100000", "FreqA 7100000"}));
  EXPECT_EQ(sent("Updating VFO...",
                 {{7100000, 0, 2}, {7100000, 0, 33}, {10000, 0, 0}, {2000000000, 0, 0}}),
            (Texts{"Freq 7098000", "Freq 7132536", "Freq 10000", "Freq 2000000000"}));
  EXPECT_EQ(sent("Frequency outside 10 kHz to 2 GHz: not sent",
                 {{9999, 0, 0}, {11000, 0, 2}, {2000000001, 0, 0}, {INT32_MIN, 0, 2}}),
            Texts{});
}

TEST_F(RigControlTest, NothingIsWrittenWithoutARigOrOverALostLink) {
  const auto write = [this] {
    rig.control.SetTRXFrequency(7100000, 0);
    rig.control.SetModulationMode("USB");
  };
  EXPECT_EQ(WritesAfter(write), Texts{});
  Link();
  form.mnuRig.Click();
  EXPECT_TRUE(form.mnuSetFreqManual.enabled);
  form.lblFrequencyExpand.caption = "N/A";
  EXPECT_EQ(WritesAfter(write), Texts{});
  EXPECT_EQ(Message(), "");

  form.lblFrequencyExpand.caption = "7.100.00";
  rig1.Vanish();
  scheduler.RunPosted();
  EXPECT_EQ(WritesAfter(write), Texts{});
  EXPECT_EQ(Message(), "No link to the rig: nothing was sent");
  form.mnuRig.Click();
  EXPECT_FALSE(form.mnuSetFreqManual.enabled);
  for (const int index : {0, 10, 50, 90}) EXPECT_EQ(form.mnuBands[index].enabled, index == 0);
  rig1.ComeBack();
  EXPECT_EQ(WritesAfter([] {}), Texts{});  // a refused write does not come later
}

TEST_F(RigControlTest, ModesAreMappedBySourceAndSidebandFlag) {
  Link();
  for (const int item : {1, 2, 3}) form.mnuModModes[item].Click();
  EXPECT_EQ(writes1.Take(), (Texts{"Mode 67108864", "Mode 33554432", "Mode 8388608"}));
  constexpr int32_t kU = PM_SSB_U, kL = PM_SSB_L, kCwU = PM_CW_U, kCwL = PM_CW_L;
  const Texts texts = {"USB", "LSB", "CW-USB", "CW-LSB", "CW", "FM", "AM", "DIG", "DRM"};
  struct Case {
    const char* inverted;
    bool fromLabel;
    std::vector<int32_t> modes;  // 0: nothing is sent
  };
  for (const Case& c : {Case{"off", false, {kU, kL, kCwU, kCwL, 0, PM_FM, PM_AM, PM_DIG_U, 0}},
                        {" On ", false, {kL, kU, kCwL, kCwU, 0, PM_FM, PM_AM, PM_DIG_U, 0}},
                        {"off", true, {kL, kU, kCwU, kCwU, kCwU, PM_FM, PM_AM, PM_DIG_U, 0}},
                        {" On ", true, {kU, kL, kCwL, kCwL, kCwL, PM_FM, PM_AM, PM_DIG_U, 0}}}) {
    rig.state.invertedSideband = c.inverted;
    for (size_t i = 0; i < texts.size(); ++i) {
      form.lblMode.caption = texts[i];
      rig.control.SetModulationMode(c.fromLabel ? "" : texts[i]);
      const int32_t mode = c.modes.at(i);
      const Texts sent(mode == 0 ? 0 : 1, "Mode " + std::to_string(mode));
      EXPECT_EQ(writes1.Take(), sent) << texts[i] << c.inverted << c.fromLabel;
    }
  }
}

TEST_F(RigControlTest, AFrequencyByHandHasToBeAboveTenKilohertz) {
  Link();
  rig.state.vfo = 1;
  const auto sent = [this](const std::optional<std::string>& text) {
    form.mnuSetFreqManual.Click();
    prompts.input(text);
    return writes1.Take();
  };
  for (const char* text : {"10", "abc", "", "14.abc.00", "0.0005", "9999999999"}) {
    EXPECT_EQ(sent(text), Texts{}) << text;
    EXPECT_NE(Message(), "") << "it is told what was refused";
  }
  EXPECT_EQ(sent(std::nullopt), Texts{});
  for (const auto& [typed, hertz] : {std::pair{"7101.5 kHz", 7101500},
                                     {"14074", 14074000},
                                     {"136", 136000},
                                     {"14.074.00", 14074000},
                                     {".475.00", 475000},
                                     {"7.0745", 7074500},
                                     {"50,313", 50313000},
                                     {"99", 99000}}) {
    EXPECT_EQ(sent(typed), Texts{"FreqA " + std::to_string(hertz)}) << typed;
  }
  EXPECT_EQ(rig.state.bandPresetKHz, 99);
}

TEST_F(RigDisplayTest, FrequencyAndTransmitStateFollowTheRig) {
  Link();
  rig.engine.scaleOffset = 5;
  int32_t written = 0;
  const Connection shown = rig.display.frequencyShown.Listen([&](int32_t hz) { written = hz; });
  struct Case {
    int32_t rx, tx;
    int16_t offsetKHz;
    const char *shown, *trx;
    int32_t real, anchor;
  };
  for (const Case& c : {Case{7100000, 0, 0, "7.100.00", "RX", 7100000, 7100005},
                        {14250000, 2, 0, "14.250.00", "RX", 14250000, 14250005},
                        {14250000, 3, 0, "..", "TX", 3, 8},
                        {7100000, 7105000, 2, "7.107.00", "TX", 7105000, 7107005},
                        {7100000, 0, 33, "7.067.46", "RX", 7100000, 7067469},
                        {0, 0, 2, "RigOffLine", "RX", 0, 2005}}) {
    rig.state.offsetKHz = c.offsetKHz;
    rig1.Tune(c.rx);
    rig1.Split(c.tx);
    rig1.Key(c.tx != 0);
    Pass(std::chrono::seconds(1));
    EXPECT_EQ(form.lblFrequencyExpand.caption.Get(), c.shown);
    EXPECT_EQ(form.lblTRXMode.caption.Get(), c.trx) << c.shown;
    EXPECT_EQ(rig.state.scaleAnchorHz, c.anchor) << c.shown;
    EXPECT_EQ(written, c.real) << c.shown;
    EXPECT_EQ(form.mnunorig.checked, c.real == 0);
  }
}

TEST_F(RigDisplayTest, WindowAndDialogNameModesTheirOwnWay) {
  Link();
  rig.engine.modeText = "drm";
  Texts window;
  Texts dialog;
  for (const int32_t mode :
       {PM_AM, PM_FM, PM_SSB_L, PM_SSB_U, PM_CW_U, PM_CW_L, PM_DIG_U, int32_t{0}}) {
    rig1.Select(mode);
    scheduler.RunPosted();
    window.push_back(form.lblMode.caption);
    dialog.push_back(dialogForm.Label6.caption);
  }
  EXPECT_EQ(window, (Texts{"AM", "FM", "LSB", "USB", "CWu", "CWl", "drm", "drm"}));
  EXPECT_EQ(dialog, (Texts{"AM", "FM", "LSB", "USB", "CW LSB", "CW USB", "Other", "drm"}));
}

}  // namespace
}  // namespace velt

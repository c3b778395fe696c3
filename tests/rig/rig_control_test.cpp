#include "rig/shown_frequency.h"
#include "rig_fixture.h"

namespace velt {
namespace {

using RigControlTest = RigFixture;

TEST_F(RigControlTest, ACaptionIsReadAsTensOfHertz) {
  struct Case {
    const char* caption;
    std::optional<int32_t> hertz;
    std::optional<int32_t> megahertzInHz;
  };
  for (const Case& c : {Case{"7.100.00", 7100000, 7100000},
                        {"14.250.12", 14250120, 14250000},
                        {".475.00", 475000, 475000},
                        {"214.748.364", 2147483640, 214748000},
                        {"2147.483.65", std::nullopt, 2147483000},
                        {"RigOffLine", std::nullopt, 0},
                        {"N/A", std::nullopt, 0},
                        {"..", std::nullopt, 0}}) {
    form.lblFrequency.caption = c.caption;
    EXPECT_EQ(ShownFrequencyHz(form.lblFrequency), c.hertz) << c.caption;
    EXPECT_EQ(ShownMegahertzInHz(form.lblFrequency), c.megahertzInHz) << c.caption;
  }
  form.lblFrequency.caption = "rigOFFline";
  EXPECT_TRUE(IsRigOffLine(form.lblFrequency));
}

TEST_F(RigControlTest, FrequenciesGoToTheVfoLessTheOffset) {
  Link();
  struct Case {
    int32_t hertz;
    int16_t vfo;
    int16_t offsetKHz;
    Texts writes;
    const char* message;
  };
  const char* updating = "Updating VFO...";
  const char* outside = "Frequency outside 10 kHz to 2 GHz: not sent";
  for (const Case& c : {Case{7100000, 0, 0, {"Freq 7100000"}, updating},
                        {7100000, 1, 0, {"FreqA 7100000"}, updating},
                        {7100000, 2, 0, {"FreqB 7100000"}, updating},
                        {7100000, 3, 0, {"FreqB 7100000", "FreqA 7100000"}, updating},
                        {7100000, 4, 0, {}, updating},
                        {7100000, 0, 2, {"Freq 7098000"}, updating},
                        {7100000, 0, 33, {"Freq 7132536"}, updating},
                        {10000, 0, 0, {"Freq 10000"}, updating},
                        {9999, 0, 0, {}, outside},
                        {11000, 0, 2, {}, outside},
                        {2000000000, 0, 0, {"Freq 2000000000"}, updating},
                        {2000000001, 0, 0, {}, outside},
                        {INT32_MIN, 0, 2, {}, outside}}) {
    rig.state.offsetKHz = c.offsetKHz;
    messages.clear();
    EXPECT_EQ(WritesAfter([&] { rig.control.SetTRXFrequency(c.hertz, c.vfo); }), c.writes)
        << c.hertz << " vfo " << c.vfo << " offset " << c.offsetKHz;
    EXPECT_EQ(messages, Texts{c.message}) << c.hertz << " vfo " << c.vfo;
  }
}

TEST_F(RigControlTest, NothingIsWrittenWithoutARigOrOverALostLink) {
  const auto write = [this] {
    rig.control.SetTRXFrequency(7100000, 0);
    rig.control.SetModulationMode("USB");
  };
  EXPECT_EQ(WritesAfter(write), Texts{});
  EXPECT_EQ(messages, Texts{});

  Link();
  form.lblFrequencyExpand.caption = "N/A";
  EXPECT_EQ(WritesAfter(write), Texts{});
  EXPECT_EQ(messages, Texts{});

  form.lblFrequencyExpand.caption = "7.100.00";
  server.Lose(1);
  EXPECT_EQ(WritesAfter(write), Texts{});
  const char* refused = "No link to the rig: nothing was sent";
  EXPECT_EQ(messages, (Texts{refused, refused}));
  rig.menus.mnuRig_Click();
  EXPECT_FALSE(form.mnuSetFreqManual.enabled);
  server.Return(1);
  EXPECT_EQ(WritesAfter([] {}), Texts{});  // a refused write does not come later
}

TEST_F(RigControlTest, ModesAreMappedBySourceAndSidebandFlag) {
  Link();
  constexpr int32_t kNone = 0;
  struct Case {
    const char* text;
    int32_t given, givenInverted, shown, shownInverted;
  };
  for (const Case& c : {Case{"USB", 0x02000000, 0x04000000, 0x04000000, 0x02000000},
                        {"LSB", 0x04000000, 0x02000000, 0x02000000, 0x04000000},
                        {"CW-USB", 0x00800000, 0x01000000, 0x00800000, 0x01000000},
                        {"CW-LSB", 0x01000000, 0x00800000, 0x00800000, 0x01000000},
                        {"CWu", kNone, kNone, 0x00800000, 0x01000000},
                        {"FM", 0x40000000, 0x40000000, 0x40000000, 0x40000000},
                        {"AM", 0x20000000, 0x20000000, 0x20000000, 0x20000000},
                        {"DIG", 0x08000000, 0x08000000, 0x08000000, 0x08000000},
                        {"CW", kNone, kNone, 0x00800000, 0x01000000},
                        {"DRM", kNone, kNone, kNone, kNone},
                        {"N/A", kNone, kNone, kNone, kNone}}) {
    for (const bool inverted : {false, true}) {
      rig.state.invertedSideband = inverted ? " On " : "off";
      const auto sent = [](int32_t mode) {
        return mode == kNone ? Texts{} : Texts{"Mode " + std::to_string(mode)};
      };
      EXPECT_EQ(WritesAfter([&] { rig.control.SetModulationMode(c.text); }),
                sent(inverted ? c.givenInverted : c.given))
          << c.text << " given, inverted " << inverted;
      form.lblMode.caption = c.text;
      std::string used;
      EXPECT_EQ(WritesAfter([&] { used = rig.control.SetModulationMode(); }),
                sent(inverted ? c.shownInverted : c.shown))
          << c.text << " shown, inverted " << inverted;
      EXPECT_EQ(used, c.text);
    }
  }
}

TEST_F(RigControlTest, TheModeMenuChecksTheShownModeAndSendsTheChosenOne) {
  Link();
  for (const auto& [caption, item] :
       {std::pair{"LSB", 1}, {"USB", 2}, {"CWl", 3}, {"CW-u", 3}, {"AM", 0}}) {
    form.lblMode.caption = caption;
    form.mnuModMode.Click();
    for (const int index : {1, 2, 3}) {
      EXPECT_EQ(form.mnuModModes[index].checked, index == item) << caption << index;
    }
  }
  EXPECT_EQ(WritesAfter([this] {
              for (const int index : {1, 2, 3}) form.mnuModModes[index].Click();
            }),
            (Texts{"Mode 67108864", "Mode 33554432", "Mode 8388608"}));
}

TEST_F(RigControlTest, AFrequencyByHandHasToBeAboveTenKilohertz) {
  Link();
  struct Case {
    std::optional<std::string> typed;
    Texts writes;
    int32_t presetKHz;
  };
  for (const Case& c : {Case{"10", {}, -1},
                        {std::nullopt, {}, -1},
                        {"abc", {}, -1},
                        {"10.001", {"FreqA 10001"}, 10},
                        {"7100.5", {"FreqA 7100500"}, 7100},
                        {"7101.5 kHz", {"FreqA 7101500"}, 7102},
                        {"9999999999", {}, -1}}) {
    rig.state.vfo = 1;
    rig.state.bandPresetKHz = -1;
    form.mnuSetFreqManual.Click();
    EXPECT_EQ(WritesAfter([&] { prompts.type(c.typed); }), c.writes) << c.typed.value_or("-");
    EXPECT_EQ(rig.state.bandPresetKHz, c.presetKHz) << c.typed.value_or("-");
  }
  EXPECT_EQ(prompts.inputs.at(0).title, "Set Rig Frequency");
  EXPECT_EQ(prompts.inputs.at(0).prompt, "Enter the frequency (in kHz):");
}

TEST_F(RigControlTest, TheRigMenuIsOffWithoutAFrequencySource) {
  for (const bool settable : {false, true}) {
    form.lblFrequency.caption = settable ? "7.100.00" : "RigOffLine";
    form.mnuRig.Click();
    EXPECT_EQ(form.mnuSetFreqManual.enabled, settable);
    for (const int index : {10, 50, 90}) EXPECT_EQ(form.mnuBands[index].enabled, settable);
    EXPECT_TRUE(form.mnuBands[0].enabled);
  }
}

TEST_F(RigControlTest, TheCounterItemActsOnlyWithItsPttMethod) {
  form.mnuArduinoFreq.enabled = true;
  form.mnuArduinoFreq.Click();
  EXPECT_TRUE(form.mnuArduinoFreq.checked);
  EXPECT_FALSE(form.tmrFreqcount.enabled);
  form.mnuArduinoFreq.Click();
  rig.state.pttMethod = "ARDUINO";
  form.mnuArduinoFreq.Click();
  EXPECT_TRUE(form.tmrFreqcount.enabled);
  EXPECT_EQ(form.lblFrequency.toolTip.Get(), "Arduino Frequency in kHz");
  form.lblFrequency.caption = "7.100.00";
  form.mnuArduinoFreq.Click();
  EXPECT_FALSE(form.tmrFreqcount.enabled);
  EXPECT_EQ(Frequency(), "RigOffLine");
  EXPECT_EQ(form.lblFrequency.toolTip.Get(),
            "Transceiver Frequency or set the frequency in kc (click for options)");
}

}  // namespace
}  // namespace velt

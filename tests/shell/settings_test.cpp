#include <gtest/gtest.h>

#include <sstream>

#include "support/doubles.h"

namespace velt {
namespace {

TEST(Settings, AFirstStartUsesTheDefaults) {
  ProgramFixture f;
  f.Start();
  Main& form = f.Form();
  EXPECT_TRUE(form.mnusettings[0].checked);
  EXPECT_TRUE(form.Window.topMost);
  EXPECT_FALSE(form.Window.placed);
  EXPECT_TRUE(form.mnusettings[1].checked);
  EXPECT_TRUE(form.mnusettings[4].checked);
  EXPECT_FALSE(form.Window.sizeable);
  EXPECT_TRUE(form.mnudomfreq.checked);
  EXPECT_TRUE(form.mnuprecision[1].checked);
  EXPECT_EQ(form.Slider.value, 15);
  EXPECT_EQ(form.Slider2.value, 50);
  EXPECT_EQ(f.program->layout.saved.widthTwips, 8385);
  EXPECT_EQ(f.program->layout.saved.heightTwips, 2430);
  EXPECT_EQ(f.program->capture.scanFreqMs, 25);
  EXPECT_EQ(f.program->carried.recSampleRateHz, 44100);
  EXPECT_EQ(f.program->display.colours.menu, kSystemButtonFace);
  EXPECT_FALSE(form.mnuautos[0].checked);
  EXPECT_TRUE(form.mnuzokamodes[0].checked);
}

TEST(Settings, EveryKeyComesBackAsItWasSaved) {
  // Texts that differ from the defaults; what is written only is left out.
  std::istringstream words(
      "Hpos=300 Vpos=450 OnTop=0 UseLines=1 Slider=33 AutoRunZOKA=True AutoCloseZOKA=True "
      "AutoStartSA=True ScopeColor=1193046 GridColor=255 MenuColor=65280 SpectrumColor=1 "
      "ZOKAMode=69 OscillosMode=True OscillosColor=2 DominantFrequency=False Precision=3 "
      "MeterSensitivity=0.1 OscillosSensitivity=2.5 SpectrumSensitivity=7 "
      "WaterfallSensitivity=61 Waterfall=1 WaterGrey=5 WaterSpeed=9 RecSampleRate=22050 "
      "OscilloscopeTimeBase=1.5 Clearity=44 cmdZOKAstart=True ScreenSize=True ScreenWidth=6000 "
      "ScreenHeight=1800 BandWidthColor=3 RigChoice=2 AbsoluteGridLabels=False ScanFreq=50 "
      "ArduinoFreq=True Expander=0 VFO=3");
  std::map<std::string, std::string> texts;
  for (std::string word; words >> word;) {
    const size_t equals = word.find('=');
    texts[word.substr(0, equals)] = word.substr(equals + 1);
  }
  ASSERT_EQ(texts.size(), 38U);
  ProgramFixture f;
  for (const auto& [key, text] : texts) f.store.Save("VELT-SA", key, text);
  f.store.Save("VELT-SA", "Version", "3.0.9");
  f.Start();
  f.program->settings.SaveRegistryStuff();
  for (const auto& [key, text] : texts) EXPECT_EQ(f.Stored(key), text) << key;
  EXPECT_EQ(f.Stored("Version"), "3.1.4");
  EXPECT_EQ(f.Stored("EXE"), "VELT-SA.exe");
  EXPECT_EQ(f.Stored("Path"), "/opt/velt");
  EXPECT_EQ(f.Form().Window.widthTwips, 6000);
  EXPECT_EQ(f.Form().Window.heightTwips, 1800);
  EXPECT_EQ(f.program->display.options.analysis.spectrumDivisor, 33 * 7);
  EXPECT_TRUE(f.Form().Window.placed);
}

TEST(Settings, BadValuesMeetTheirChecks) {
  struct Case {
    const char* key;
    const char* stored;
    const char* saved;
  };
  const Case cases[] = {{"WaterfallSensitivity", "0", "50"},
                        {"OscillosSensitivity", "-2", "1"},
                        {"OscillosSensitivity", "2,5", "2.5"},
                        {"Slider", "0", "15"},
                        {"Slider", "900", "100"},
                        {"Precision", "9", "1"},
                        {"Precision", "abc", "1"},
                        {"ZOKAMode", "5", "0"},
                        {"ScanFreq", "0", "25"},
                        {"WaterSpeed", "99999", "3"},
                        {"GridColor", "x", "0"},
                        {"MenuColor", "-2147483633", "-2147483633"},
                        {"OscillosMode", "true", "True"},
                        {"OscillosMode", "-1", "True"},
                        {"OscillosMode", "nonsense", "False"}};
  for (const Case& c : cases) {
    ProgramFixture f;
    f.store.Save("VELT-SA", c.key, c.stored);
    f.Start();
    f.program->settings.SaveRegistryStuff();
    EXPECT_EQ(f.Stored(c.key), c.saved) << c.key << " " << c.stored;
  }
}

TEST(Settings, TheDesktopPlacesTheWindowOnlyWhenBothPlacesAreNegative) {
  for (const auto& [left, top, placed] :
       {std::tuple{"-1", "-1", false}, {"300", "-1", true}, {"-1", "300", true}}) {
    ProgramFixture f;
    f.store.Save("VELT-SA", "Hpos", left);
    f.store.Save("VELT-SA", "Vpos", top);
    f.Start();
    EXPECT_EQ(f.Form().Window.placed, placed) << left << " " << top;
  }
}

TEST(Settings, SavedSizesBelowTheLimitBecomeTheDefaults) {
  ProgramFixture f;
  f.store.Save("VELT-SA", "ScreenWidth", "1200");
  f.store.Save("VELT-SA", "ScreenHeight", "1499");
  f.Start();
  EXPECT_EQ(f.program->layout.saved.widthTwips, 8385);
  EXPECT_EQ(f.program->layout.saved.heightTwips, 2430);
  f.store.Save("VELT-SA", "ScreenHeight", "1500");
  f.Restart();
  f.Start();
  EXPECT_EQ(f.program->layout.saved.heightTwips, 1500);
}

TEST(Settings, LinesInsteadOfBarsCheckStayOnTop) {
  ProgramFixture f;
  f.store.Save("VELT-SA", "UseLines", "0");
  f.store.Save("VELT-SA", "OnTop", "0");
  f.Start();
  EXPECT_FALSE(f.Form().mnusettings[1].checked);
  EXPECT_TRUE(f.Form().mnusettings[0].checked);
  EXPECT_FALSE(f.Form().Window.topMost);
  EXPECT_FALSE(f.program->display.options.analysis.useLines);
}

TEST(Settings, TheMenuColourOfOldVersionsIsReset) {
  const std::pair<std::string, int32_t> cases[] = {
      {"2.9.0", kSystemButtonFace}, {"", kSystemButtonFace}, {"3.0.0", 255}};
  for (const auto& [version, colour] : cases) {
    ProgramFixture f;
    f.store.Save("VELT-SA", "Version", version);
    f.store.Save("VELT-SA", "MenuColor", "255");
    f.Start();
    EXPECT_EQ(f.program->display.colours.menu, colour) << version;
  }
}

}  // namespace
}  // namespace velt

#include <gtest/gtest.h>

#include "app/words.h"
#include "support/doubles.h"

namespace velt {
namespace {

// Settings are written "KEY=TEXT KEY=TEXT ...".
struct SettingsTest : testing::Test, ProgramFixture {
  static std::map<std::string, std::string> Parse(const std::string& settings) {
    std::map<std::string, std::string> texts;
    for (const std::string& word : Words(settings)) {
      const size_t equals = word.find('=');
      texts[word.substr(0, equals)] = word.substr(equals + 1);
    }
    return texts;
  }
  // Starts the program with nothing else stored.
  void StartWith(const std::string& settings) {
    store.DeleteAll();
    for (const auto& [key, text] : Parse(settings)) store.Save("VELT-SA", key, text);
    Restart();
    Start();
  }
  void ExpectSaved(const std::string& settings) {
    program->settings.SaveRegistryStuff();
    for (const auto& [key, text] : Parse(settings)) EXPECT_EQ(Stored(key), text) << key;
  }
};

TEST_F(SettingsTest, EveryKeyHasItsDefaultAndComesBackAsItWasSaved) {
  const std::string always = " Version=3.1.4 EXE=VELT-SA.exe Path=/opt/velt";
  const std::string first =
      "Hpos=-1 Vpos=-1 OnTop=1 UseLines=1 Slider=15 AutoRunZOKA=False AutoCloseZOKA=False "
      "AutoStartSA=False ScopeColor=6559488 GridColor=0 MenuColor=-2147483633 "
      "SpectrumColor=16744749 ZOKAMode=0 OscillosMode=False OscillosColor=255 "
      "DominantFrequency=True Precision=1 MeterSensitivity=4 OscillosSensitivity=1 "
      "SpectrumSensitivity=10 WaterfallSensitivity=50 Waterfall=0 WaterGrey=1 WaterSpeed=3 "
      "RecSampleRate=44100 OscilloscopeTimeBase=2 Clearity=10 cmdZOKAstart=False "
      "ScreenSize=False ScreenWidth=8385 ScreenHeight=2460 BandWidthColor=16711680 RigChoice=1 "
      "AbsoluteGridLabels=True ScanFreq=25 ArduinoFreq=False Expander=1 VFO=0";
  const std::string other =
      "Hpos=300 Vpos=450 OnTop=0 UseLines=1 Slider=33 AutoRunZOKA=True AutoCloseZOKA=True "
      "AutoStartSA=True ScopeColor=1193046 GridColor=255 MenuColor=65280 SpectrumColor=1 "
      "ZOKAMode=69 OscillosMode=True OscillosColor=2 DominantFrequency=False Precision=3 "
      "MeterSensitivity=0.1 OscillosSensitivity=2.5 SpectrumSensitivity=7 "
      "WaterfallSensitivity=61 Waterfall=1 WaterGrey=5 WaterSpeed=9 RecSampleRate=22050 "
      "OscilloscopeTimeBase=1.5 Clearity=44 cmdZOKAstart=True ScreenSize=True ScreenWidth=6000 "
      "ScreenHeight=1800 BandWidthColor=3 RigChoice=2 AbsoluteGridLabels=False ScanFreq=50 "
      "ArduinoFreq=True Expander=0 VFO=3";
  StartWith("");
  ExpectSaved(first + always);
  EXPECT_TRUE(Form().Window.topMost && !Form().Window.placed);  // the desktop does that
  StartWith(other + " Version=3.0.9");
  ExpectSaved(other + always);
  EXPECT_TRUE(Form().Window.placed && !Form().Window.topMost);
  EXPECT_TRUE(Form().Window.widthTwips == 6000 && Form().Window.heightTwips == 1800);
  EXPECT_EQ(program->display.options.analysis.spectrumDivisor, 33 * 7);
}

TEST_F(SettingsTest, BadValuesMeetTheirChecks) {
  using Row = std::pair<const char*, const char*>;
  for (const auto& [stored, saved] :
       {Row{"WaterfallSensitivity=0", "WaterfallSensitivity=50"},
        Row{"OscillosSensitivity=2,5", "OscillosSensitivity=2.5"}, Row{"Slider=0", "Slider=15"},
        Row{"Slider=900", "Slider=100"}, Row{"Precision=abc", "Precision=1"},
        Row{"ZOKAMode=5", "ZOKAMode=0"}, Row{"ScanFreq=0", "ScanFreq=25"},
        Row{"OscillosMode=-1", "OscillosMode=True"},
        Row{"OscillosMode=nonsense", "OscillosMode=False"},
        // The menu colour of old versions is not taken over.
        Row{"MenuColor=255 Version=2.9.0", "MenuColor=-2147483633"},
        Row{"MenuColor=255", "MenuColor=-2147483633"},
        Row{"MenuColor=255 Version=3.0.0", "MenuColor=255"},
        // A size below the limit becomes the default.
        Row{"ScreenSize=True ScreenWidth=1200 ScreenHeight=1499",
            "ScreenWidth=8385 ScreenHeight=2430"},
        Row{"ScreenSize=True ScreenHeight=1500", "ScreenHeight=1500"}}) {
    SCOPED_TRACE(stored);
    StartWith(stored);
    ExpectSaved(saved);
  }
}

}  // namespace
}  // namespace velt

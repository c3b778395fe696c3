#include "app/options.h"

#include <gtest/gtest.h>

#include <array>

#include "app/words.h"

namespace velt {
namespace {

using Kind = Options::Run;

Options Parse(const std::string& call) {
  return ParseOptions(Words(call), "3.0.0");
}

TEST(Options, ChooseTheKindOfRun) {
  struct Case {
    const char* call;
    Kind run = Kind::Invalid;
  };
  for (const Case& c :
       {Case{"", Kind::Window}, Case{"--demo", Kind::Window},
        Case{"--input reset.wav", Kind::Window}, Case{"--input=reset", Kind::Window},
        Case{"--rig2 localhost:4600", Kind::Window},
        Case{"-session 1_2 -style Windows -reverse", Kind::Window},
        Case{"--reset --help", Kind::Help}, Case{"--list-audio-devices", Kind::ListDevices},
        Case{"--export-presets a", Kind::ExportPresets},
        Case{"--import-presets=reset", Kind::ImportPresets},
        Case{"--headless --seconds 3", Kind::Headless}, Case{"--analyse a.wav", Kind::Analyse},
        Case{"/RESET", Kind::Reset}, Case{"-reset", Kind::Reset},
        Case{"--reset --demo", Kind::Reset}, Case{"preset-Reset", Kind::Reset},
        Case{"--headless --reset", Kind::Reset},
        // No typing error deletes the settings.
        Case{"--input --reset"}, Case{"my-preset.wav"}, Case{"--import-presets"},
        Case{"/x/reset.wav"}, Case{"./reset"}, Case{"--preset=reset"}, Case{"--inptu reset"},
        Case{"--import-presets a reset"}, Case{"--export-presets a --headless --seconds 1"},
        Case{"my reset notes"}, Case{"--analyse a reset"}, Case{"reset --rig1 x"}, Case{"-style"},
        Case{"--headless"}, Case{"--headless --seconds 0"}, Case{"--headless --seconds x"},
        Case{"--csv a.csv"}, Case{"--analyse a --demo"}, Case{"--demo --input a"}, Case{"--input="},
        Case{"--analyse a --mode 2"}, Case{"--analyse a --precision 5"},
        Case{"--analyse a --slider 0"}, Case{"--spectrogram a.png"}, Case{"--analyse a --from 3"},
        Case{"--analyse a --spectrogram b --from x"}, Case{"--analyse a --spectrogram b --from=-1"},
        Case{"--analyse a --spectrogram b --from 3 --to 3"}, Case{"--analyse a --size 1x1"},
        Case{"--rig1 localhost"}}) {
    EXPECT_EQ(Parse(c.call).run, c.run) << c.call;
  }
  EXPECT_EQ(ParseOptions(std::vector<std::string>{"--input", ""}, "").run, Kind::Invalid);
}

TEST(Options, CarryTheirValues) {
  const Options options = Parse(
      "--analyse a.wav --csv o.csv --image o.png --mode 69 --precision 3 --slider 40 "
      "--waterfall --size 1048x200");
  const AnalyseOptions& analyse = options.analyse;
  EXPECT_TRUE(analyse.csv == "o.csv" && analyse.image == "o.png" && analyse.waterfall);
  EXPECT_EQ((std::array{analyse.mode, analyse.precision, analyse.slider}), (std::array{69, 3, 40}));
  EXPECT_EQ((std::array{analyse.width, analyse.height}), (std::array{1048, 200}));
  const AnalyseOptions whole =
      Parse("--analyse a --spectrogram o.png --size 64x48 --from 1.5 --to 9").analyse;
  EXPECT_TRUE(whole.spectrogram == "o.png" && whole.fromSeconds == 1.5 && whole.toSeconds == 9.0);
  EXPECT_EQ((std::array{whole.plotWidth, whole.plotHeight}), (std::array{64, 48}));
  EXPECT_FALSE(Parse("--demo --data-folder /d").KeepsInMemory());
  EXPECT_FALSE(Parse("--headless --seconds 1").KeepsInMemory());
  EXPECT_EQ(Parse("--rig1 radio:4600").rigAddresses[0], "radio:4600");
  EXPECT_EQ(Parse("--style=Windows --demo -platform xcb").qtArguments,
            Words("-platform xcb -style Windows"));
}

}  // namespace
}  // namespace velt

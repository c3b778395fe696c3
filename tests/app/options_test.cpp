#include "app/options.h"

#include <gtest/gtest.h>

namespace velt {
namespace {

using Kind = Options::Run;

Options Parse(const std::vector<std::string>& arguments) {
  return ParseOptions(arguments, "3.0.0");
}

TEST(Options, ChooseTheKindOfRun) {
  const std::vector<std::pair<std::vector<std::string>, Kind>> cases{
      {{}, Kind::Window},
      {{"--demo"}, Kind::Window},
      {{"--help"}, Kind::Help},
      {{"-v"}, Kind::Version},
      {{"--list-audio-devices"}, Kind::ListDevices},
      {{"--headless", "--seconds", "3"}, Kind::Headless},
      {{"--analyse", "a.wav"}, Kind::Analyse},
      {{"/RESET"}, Kind::Reset},
      {{"-reset"}, Kind::Reset},
      {{"--reset", "--demo"}, Kind::Reset},
      {{"preset-Reset"}, Kind::Reset},
      {{"--headless", "--reset"}, Kind::Reset},
      {{"--reset", "--help"}, Kind::Help},
      // No typing error deletes the settings.
      {{"--input", "reset.wav"}, Kind::Window},
      {{"--input=reset"}, Kind::Window},
      {{"--input", "--reset"}, Kind::Invalid},
      {{"my-preset.wav"}, Kind::Invalid},
      {{"--import-presets"}, Kind::Invalid},
      {{"/x/reset.wav"}, Kind::Invalid},
      {{"./reset"}, Kind::Invalid},
      {{"my-reset-notes.txt"}, Kind::Invalid},
      {{"--preset=reset"}, Kind::Invalid},
      {{"--inptu", "reset"}, Kind::Invalid},
      {{"my", "reset", "notes"}, Kind::Invalid},
      {{"--analyse", "a.wav", "reset"}, Kind::Invalid},
      {{"reset", "--rig1", "x"}, Kind::Invalid},
      // Qt's own.
      {{"-session", "1_2", "-style", "Windows", "-reverse"}, Kind::Window},
      {{"-style"}, Kind::Invalid},
      {{"--bogus"}, Kind::Invalid},
      {{"--headless"}, Kind::Invalid},
      {{"--seconds", "3"}, Kind::Invalid},
      {{"--headless", "--seconds", "0"}, Kind::Invalid},
      {{"--headless", "--seconds", "x"}, Kind::Invalid},
      {{"--csv", "a.csv"}, Kind::Invalid},
      {{"--analyse", "a.wav", "--demo"}, Kind::Invalid},
      {{"--demo", "--input", "a.wav"}, Kind::Invalid},
      {{"--input", ""}, Kind::Invalid},
      {{"--analyse", "a.wav", "--mode", "2"}, Kind::Invalid},
      {{"--analyse", "a.wav", "--precision", "5"}, Kind::Invalid},
      {{"--analyse", "a.wav", "--slider", "0"}, Kind::Invalid},
      {{"--analyse", "a.wav", "--size", "524"}, Kind::Invalid},
      {{"--analyse", "a.wav", "--size", "1x1"}, Kind::Invalid},
      {{"--rig1", "localhost"}, Kind::Invalid},
      {{"--rig2", "localhost:4600"}, Kind::Window},
  };
  for (const auto& [arguments, run] : cases) {
    EXPECT_EQ(Parse(arguments).run, run) << (arguments.empty() ? "" : arguments[0]);
  }
}

TEST(Options, CarryTheirValues) {
  const Options analyse =
      Parse({"--analyse", "a.wav", "--csv", "o.csv", "--image", "o.png", "--mode", "69",
             "--precision", "3", "--slider", "40", "--waterfall", "--size", "1048x200"});
  ASSERT_EQ(analyse.run, Kind::Analyse) << analyse.text;
  EXPECT_EQ(analyse.analyse.csv, "o.csv");
  EXPECT_EQ(analyse.analyse.image, "o.png");
  EXPECT_EQ(analyse.analyse.mode, 69);
  EXPECT_EQ(analyse.analyse.precision, 3);
  EXPECT_EQ(analyse.analyse.slider, 40);
  EXPECT_TRUE(analyse.analyse.waterfall);
  EXPECT_EQ(analyse.analyse.width, 1048);
  EXPECT_EQ(analyse.analyse.height, 200);
  EXPECT_TRUE(Parse({"--demo"}).KeepsInMemory());
  EXPECT_FALSE(Parse({"--demo", "--data-folder", "/d"}).KeepsInMemory());
  EXPECT_FALSE(Parse({"--headless", "--seconds", "1"}).KeepsInMemory());
  EXPECT_EQ(Parse({"--rig1", "radio:4600"}).rigAddresses[0], "radio:4600");
  const std::vector<std::string> forQt{"-platform", "xcb", "-style", "Windows"};
  EXPECT_EQ(Parse({"--style=Windows", "--demo", "-platform", "xcb"}).qtArguments, forQt);
}

}  // namespace
}  // namespace velt

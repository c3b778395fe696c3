// The program's command line as a user calls it, without any display.
#include <sstream>

#include "app/program_call.h"
#include "support/x_desktop.h"

namespace velt {
namespace {

TEST_F(CommandLine, AnalysesATone) {
  WriteToneFile(Path("tone.wav"), 3000, 2.0);
  const Result result = Call({"--analyse", Path("tone.wav"), "--csv", Path("o.csv"), "--image",
                              Path("o.png"), "--size", "600x90"});
  EXPECT_EQ(result.exitCode, 0) << result.said;
  EXPECT_NE(result.said.find("Blocks: 172"), std::string::npos) << result.said;
  std::ifstream csv(Path("o.csv"));
  std::string line;
  int lines = 0;
  while (std::getline(csv, line)) {
    ++lines;
    std::istringstream fields(line);
    std::vector<std::string> values;
    for (std::string field; std::getline(fields, field, ',');) values.push_back(field);
    ASSERT_EQ(values.size(), 4U + 601U);
    EXPECT_EQ(values[0], std::to_string(lines));
    EXPECT_NEAR(std::atof(values[1].c_str()), 3000, 90);
    EXPECT_TRUE(values[2].ends_with("Hz"));
    EXPECT_GT(std::atof(values[3].c_str()), 0);
    // The column of the tone stands out.
    EXPECT_GT(std::atof(values[4 + 3000 * 600 / 22115].c_str()),
              4 * std::atof(values[4 + 500].c_str()));
  }
  EXPECT_EQ(lines, 172);
  EXPECT_EQ(ReadText(Path("o.png")).substr(1, 3), "PNG");
}

TEST_F(CommandLine, BadFilesGetOneClearLine) {
  std::ofstream(Path("empty.wav")).close();
  std::ofstream(Path("text.wav")) << "this is not a sound";
  WriteToneFile(Path("short.wav"), 1000, 0.005);
  WriteToneFile(Path("good.wav"), 1000, 0.1);
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{Path("missing.wav")},
                                             {Path("empty.wav")},
                                             {Path("text.wav")},
                                             {Path("short.wav")},
                                             {folder.Path().string()},
                                             {Path("good.wav"), "--csv", "/nowhere/o.csv"},
                                             {Path("good.wav"), "--image", "/nowhere/o.png"}}) {
    std::vector<std::string> call{"--analyse"};
    call.insert(call.end(), arguments.begin(), arguments.end());
    const Result result = Call(call);
    EXPECT_EQ(result.exitCode, 1) << arguments[0];
    EXPECT_EQ(result.Lines(), 1) << result.said;
  }
}

TEST_F(CommandLine, ATruncatedFileIsAnalysedAsFarAsItGoes) {
  WriteToneFile(Path("whole.wav"), 1000, 1.0);
  std::ofstream(Path("cut.wav"), std::ios::binary) << ReadText(Path("whole.wav")).substr(0, 44100);
  const Result result = Call({"--analyse", Path("cut.wav")});
  EXPECT_EQ(result.exitCode, 0) << result.said;
  EXPECT_NE(result.said.find("Blocks: 43"), std::string::npos) << result.said;
  EXPECT_NE(result.said.find("velt-sa: "), std::string::npos) << result.said;
}

TEST_F(CommandLine, WrongCallsShowTheUsage) {
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {"--bogus"}, {"--analyse", "a.wav", "--mode", "7"}, {"stray"}}) {
    const Result result = Call(arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(result.said.find("Usage:"), std::string::npos);
  }
  EXPECT_EQ(Call({"--version"}).said, "VELT-SA 3.0.0\n");
  EXPECT_EQ(Call({"--help"}).exitCode, 0);
}

TEST_F(CommandLine, WithoutADisplayItSaysWhatToDo) {
  XDesktop frozen;
  frozen.Freeze();
  for (const std::vector<std::string>& surroundings :
       std::vector<std::vector<std::string>>{{"DISPLAY="},
                                             {"DISPLAY=:54321"},
                                             {"DISPLAY=", "WAYLAND_DISPLAY=none"},
                                             {"DISPLAY=", "QT_QPA_PLATFORM=nonsense"},
                                             {"DISPLAY=" + frozen.Display()}}) {
    const Result result = Call({}, With(surroundings));
    EXPECT_EQ(result.exitCode, 1) << surroundings.back();
    EXPECT_TRUE(result.Lines() == 1 && result.Says("--headless")) << result.said;
  }
  // Settings can be reset all the same, though nobody can dismiss a box.
  const Result result = Call({"/RESET"}, With({"DISPLAY=:54321"}));
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_TRUE(result.Lines() == 1 && result.Says("restored to their defaults")) << result.said;
}

TEST_F(CommandLine, AHeadlessRunThatCannotBeSaysWhy) {
  std::ofstream(Path("occupied")) << "mine";
  const std::string headless = "--headless";
  for (const auto& [arguments, reason] :
       std::initializer_list<std::pair<std::vector<std::string>, std::string>>{
           {{headless, "--input", Path("none.wav")}, "no such file"},
           {{headless, "--input", Path("occupied")}, "not a sound file"},
           {{headless, "--data-folder", Path("occupied")}, "Not a directory"},
           {{headless, "--data-folder", "/proc/none"}, "/proc/none"}}) {
    std::vector<std::string> call = arguments;
    call.insert(call.end(), {"--seconds", "1"});
    const Result result = Call(call);
    EXPECT_EQ(result.exitCode, 1) << arguments.back();
    EXPECT_TRUE(result.Lines() == 1 && result.Says(reason)) << result.said;
  }
  EXPECT_EQ(ReadText(Path("occupied")), "mine");

  WriteToneFile(Path("tone.wav"), 1000, 0.1);
  Process::Options aside = Surroundings();
  aside.output = Path("first");
  const auto first = Start({headless, "--seconds", "20"}, aside);
  ASSERT_TRUE(WaitUntil([this] { return std::filesystem::exists(Path("velt-sa.lock")); },
                        std::chrono::seconds(10)));
  for (const std::vector<std::string>& more : std::vector<std::vector<std::string>>{
           {}, {"--screenshot", Path("x.png")}, {"--input", Path("tone.wav")}}) {
    std::vector<std::string> call{headless, "--seconds", "1"};
    call.insert(call.end(), more.begin(), more.end());
    const Result result = Call(call);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.Lines() == 1 && result.Says("Another")) << result.said;
  }
}

TEST_F(CommandLine, NamesAreTheBytesThatWereGiven) {
  const auto named = [this](const std::string& name) { return Path("caf\xe9-" + name); };
  WriteToneFile(named("tone.wav"), 1000, 0.1);
  Result result =
      Call({"--analyse", named("tone.wav"), "--csv", named("o.csv"), "--image", named("o.png")});
  EXPECT_EQ(result.exitCode, 0) << result.said;
  result = Call({"--headless", "--seconds", "1", "--input=" + named("tone.wav"), "--data-folder",
                 named("data"), "--screenshot", named("window.png"), "--log", named("log")});
  EXPECT_EQ(result.exitCode, 0) << result.said;
  for (const char* name : {"o.csv", "o.png", "data/VELT-SA.ini", "data/WAV", "window.png", "log"}) {
    EXPECT_TRUE(std::filesystem::exists(named(name))) << name;
  }
  EXPECT_TRUE(Call({"--analyse", named("none.wav")}).Says(named("none.wav") + ": no such file"));
}

TEST_F(CommandLine, AHeadlessRunSavesItsSettings) {
  const Result result = Call({"--headless", "--seconds", "1", "--data-folder", Path("data"),
                              "--screenshot", Path("window.png")});
  EXPECT_EQ(result.exitCode, 0) << result.said;
  EXPECT_NE(ReadText(folder.Path() / "data" / "VELT-SA.ini").find("Version=3.0.0"),
            std::string::npos);
  EXPECT_EQ(ReadText(Path("window.png")).substr(1, 3), "PNG");
  EXPECT_EQ(Call({"--headless", "--seconds", "1", "--screenshot", "/nowhere/x.png"}).exitCode, 1);
}

TEST_F(CommandLine, TheGuardianDoesNothingAlone) {
  const Result result = Call({"--guardian"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(std::count(result.said.begin(), result.said.end(), '\n'), 1) << result.said;
}

}  // namespace
}  // namespace velt

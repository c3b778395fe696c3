// The program's command line as a user calls it, without any display.
#include "app/program_call.h"
#include "support/x_desktop.h"

namespace velt {
namespace {

TEST_F(CommandLine, AnalysesATone) {
  WriteToneFile("tone.wav", 3000, 2.0);
  Result result = Call("--analyse tone.wav --csv o.csv --image o.png --size 600x90");
  EXPECT_TRUE(result.exitCode == 0 && result.Says("Blocks: 172")) << result.said;
  std::ifstream csv("o.csv");
  int lines = 0;
  for (std::string line; std::getline(csv, line);) {
    std::ranges::replace(line, ',', ' ');
    const std::vector<std::string> values = Words(line);
    ASSERT_EQ(values.size(), 4U + 601U);
    EXPECT_EQ(values[0], std::to_string(++lines));
    EXPECT_NEAR(std::stod(values[1]), 3000, 90);
    EXPECT_TRUE(values[2].ends_with("Hz"));
    EXPECT_GT(std::stod(values[3]), 0);
    // The column of the tone stands out.
    EXPECT_GT(std::stod(values[4 + 3000 * 600 / 22115]), 4 * std::stod(values[4 + 500]));
  }
  EXPECT_EQ(lines, 172);
  EXPECT_EQ(folder.Read("o.png").substr(1, 3), "PNG");

  fs::resize_file("tone.wav", 44100);
  result = Call("--analyse tone.wav");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_TRUE(result.Says("Blocks: 43") && result.Says("velt-sa: ")) << result.said;
}

TEST_F(CommandLine, WhatCannotBeReadOrWrittenGetsOneClearLine) {
  folder.Write("text.wav", "this is not a sound");
  WriteToneFile("good.wav", 1000, 0.1);
  for (const char* call : {"missing.wav", "text.wav", ".", "good.wav --csv /nowhere/o.csv",
                           "good.wav --image /nowhere/o.png", "good.wav --csv /dev/full",
                           "good.wav --image /dev/full"}) {
    const Result result = Call(std::string("--analyse ") + call);
    EXPECT_EQ(result.exitCode, 1) << call;
    EXPECT_TRUE(result.IsOneLineWith(Words(call).back())) << result.said;
  }
  for (const char* call : {"--help", "--version", "--analyse good.wav"}) {
    const Result result = Call(call, "", {{1, "/dev/full"}});
    EXPECT_EQ(result.exitCode, 1) << call;
    EXPECT_TRUE(result.IsOneLineWith("No space left")) << result.said;
  }
}

TEST_F(CommandLine, WrongCallsShowTheUsage) {
  for (const char* call : {"--bogus", "--analyse a.wav --mode 7", "stray"}) {
    const Result result = Call(call);
    EXPECT_TRUE(result.exitCode == 2 && result.Says("Usage:")) << call;
  }
  EXPECT_EQ(Call("--version").said, "VELT-SA 3.0.0\n");
  EXPECT_EQ(Call("--help").exitCode, 0);
  const Result result = Call("--guardian");
  EXPECT_TRUE(result.exitCode == 2 && result.IsOneLineWith("")) << result.said;
}

TEST_F(CommandLine, WithoutADisplayItSaysWhatToDo) {
  XDesktop frozen;
  frozen.Freeze();
  for (const std::string& surroundings :
       {std::string("DISPLAY="), std::string("DISPLAY=:54321"),
        std::string("DISPLAY= WAYLAND_DISPLAY=none"),
        std::string("DISPLAY= QT_QPA_PLATFORM=nonsense"), "DISPLAY=" + frozen.Display()}) {
    const Result result = Call("", surroundings);
    EXPECT_EQ(result.exitCode, 1) << surroundings;
    EXPECT_TRUE(result.IsOneLineWith("--headless")) << result.said;
  }
  // Settings can be reset all the same, though nobody can dismiss a box.
  const Result result = Call("/RESET", "DISPLAY=:54321");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_TRUE(result.IsOneLineWith("restored to their defaults")) << result.said;
}

TEST_F(CommandLine, AHeadlessRunThatCannotBeSaysWhy) {
  folder.Write("occupied", "mine");
  WriteToneFile("tone.wav", 1000, 0.1);
  const auto fails = [this](const std::string& more, const std::string& reason) {
    const Result result = Call("--headless --seconds 1 " + more);
    EXPECT_EQ(result.exitCode, 1) << more;
    EXPECT_TRUE(result.IsOneLineWith(reason)) << result.said;
  };
  fails("--input none.wav", "no such file");
  fails("--input occupied", "not a sound file");
  fails("--data-folder occupied", "Not a directory");
  fails("--data-folder /proc/none", "/proc/none");
  EXPECT_EQ(folder.Read("occupied"), "mine");
  EXPECT_EQ(Call("--headless --seconds 1 --screenshot /nowhere/x.png").exitCode, 1);

  const Process first = Start("--headless --seconds 20");
  ASSERT_TRUE(WaitUntil([] { return fs::exists("velt-sa.lock"); }, std::chrono::seconds(10)));
  for (const char* more : {"", "--screenshot x.png", "--input tone.wav"}) fails(more, "Another");
}

TEST_F(CommandLine, NamesAreTheBytesThatWereGivenAndAHeadlessRunSavesItsSettings) {
  WriteToneFile("caf\xe9.wav", 1000, 0.1);
  Result result = Call("--analyse caf\xe9.wav --csv caf\xe9.csv --image caf\xe9.png");
  EXPECT_EQ(result.exitCode, 0) << result.said;
  result = Call(
      "--headless --seconds 1 --input=caf\xe9.wav --data-folder caf\xe9 --log caf\xe9.log "
      "--screenshot caf\xe9-window.png");
  EXPECT_EQ(result.exitCode, 0) << result.said;
  for (const char* name : {"caf\xe9.csv", "caf\xe9.png", "caf\xe9/WAV", "caf\xe9.log"}) {
    EXPECT_TRUE(fs::exists(name)) << name;
  }
  EXPECT_NE(folder.Read("caf\xe9/VELT-SA.ini").find("Version=3.0.0"), std::string::npos);
  EXPECT_EQ(folder.Read("caf\xe9-window.png").substr(1, 3), "PNG");
  EXPECT_TRUE(Call("--analyse none\xe9.wav").Says("none\xe9.wav: no such file"));
}

}  // namespace
}  // namespace velt

// The program's command line as a user calls it, without any display.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "support/process.h"
#include "support/pulse_server.h"

namespace velt {
namespace {

struct CommandLine : testing::Test {
  TempFolder folder;

  struct Result {
    int exitCode;
    std::string said;
  };
  Result Call(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), VELT_PROGRAM);
    const auto output = folder.Path() / "output";
    std::filesystem::remove(output);  // a process appends
    Process process(arguments, {.environment = {"HOME=" + folder.Path().string(),
                                                "XDG_RUNTIME_DIR=" + folder.Path().string(),
                                                "DISPLAY=", "PULSE_SERVER=unix:/nowhere"},
                                .output = output});
    const bool ended = process.WaitForEnd(std::chrono::seconds(20));
    return {ended ? process.ExitCode().value_or(-1) : -1, ReadText(output)};
  }
  std::string Path(const std::string& name) const { return (folder.Path() / name).string(); }
};

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
    EXPECT_EQ(std::count(result.said.begin(), result.said.end(), '\n'), 1) << result.said;
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
  const Result result = Call({});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_NE(result.said.find("--headless"), std::string::npos);
}

TEST_F(CommandLine, AnUnwritablePlaceForDataLosesNothing) {
  // A file stands where the folder should be made.
  std::ofstream(Path("occupied")) << "mine";
  const Result result = Call(
      {"--headless", "--seconds", "1", "--data-folder", Path("occupied"), "--log", Path("log")});
  EXPECT_EQ(result.exitCode, 0) << result.said;
  EXPECT_EQ(ReadText(Path("occupied")), "mine");
  const std::string log = ReadText(Path("log"));
  EXPECT_NE(log.find("could not be made"), std::string::npos) << log;
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

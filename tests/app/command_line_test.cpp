// The program's command line as a user calls it, without any display, in a home of its own.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>

#include "adapters/files/full_disk.h"
#include "app/words.h"
#include "support/process.h"
#include "support/pulse_server.h"
#include "support/serial_line.h"
#include "support/x_desktop.h"

namespace velt {
namespace {

namespace fs = std::filesystem;

// Program and test work in the same folder.
struct CommandLine : testing::Test {
  const TempFolder folder;

  CommandLine() {
    fs::current_path(folder.Path());
    WriteToneFile("tone.wav", 1000, 0.1);
  }
  ~CommandLine() override { fs::current_path("/"); }

  struct Result {
    int exitCode;
    std::string said;
    bool Says(const std::string& text) const { return said.find(text) != std::string::npos; }
  };

  // `environment` is over the usual one: of equal names the first counts.
  Process Start(const std::string& call, const std::string& environment = "",
                const std::map<int, fs::path>& files = {}) const {
    const std::string home = folder.Path().string();
    fs::remove("output");  // a process appends
    return Process(Words(VELT_PROGRAM " " + call),
                   {.environment = Words(environment + " HOME=" + home +
                                         " XDG_RUNTIME_DIR=" + home + " XDG_CONFIG_HOME=" + home +
                                         " DISPLAY= WAYLAND_DISPLAY= PULSE_SERVER=unix:/nowhere"),
                    .output = "output",
                    .files = files});
  }
  Result Call(const std::string& call, const std::string& environment = "",
              const std::map<int, fs::path>& files = {}) const {
    Process process = Start(call, environment, files);
    process.WaitForEnd(std::chrono::seconds(20));
    return {process.ExitCode().value_or(-1), folder.Read("output")};
  }
  // Ends so and says one line with that text.
  void ExpectLine(int exitCode, const std::string& text, const std::string& call,
                  const std::string& environment = "",
                  const std::map<int, fs::path>& files = {}) const {
    const Result result = Call(call, environment, files);
    EXPECT_TRUE(result.exitCode == exitCode && result.Says(text) &&
                std::ranges::count(result.said, '\n') == 1)
        << call << ' ' << environment << ": " << result.exitCode << ' ' << result.said;
  }
  bool IsPicture(const std::string& name) const { return folder.Read(name).substr(1, 3) == "PNG"; }
};

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
    // The column of the tone stands out.
    EXPECT_GT(std::stod(values[4 + 3000 * 600 / 22115]), 4 * std::stod(values[4 + 500]));
  }
  EXPECT_EQ(lines, 172);
  result = Call("--analyse tone.wav --spectrogram s.png");
  EXPECT_TRUE(result.exitCode == 0 && result.Says("at 3015 Hz")) << result.said;
  EXPECT_TRUE(IsPicture("o.png") && IsPicture("s.png"));

  fs::resize_file("tone.wav", 44100);
  result = Call("--analyse tone.wav");
  EXPECT_TRUE(result.exitCode == 0 && result.Says("Blocks: 43") && result.Says("velt-sa: "));
  WriteToneFile("zeros.wav", 0, 0.1);
  EXPECT_TRUE(Call("--analyse zeros.wav").Says("silence (100 %)"));
}

TEST_F(CommandLine, WhatCannotBeReadOrWrittenGetsOneClearLine) {
  folder.Write("text.wav", "this is not a sound");
  for (const char* call :
       {"missing.wav", "text.wav", ".", "tone.wav --csv /nowhere/o.csv", "tone.wav --csv /dev/full",
        "tone.wav --image /dev/full", "tone.wav --spectrogram /dev/full",
        "tone.wav --spectrogram o.png --from 5"}) {
    ExpectLine(1, Words(call).back(), std::string("--analyse ") + call);
  }
  for (const char* call : {"--analyse tone.wav", "--help"}) {
    ExpectLine(1, "No space left", call, "", {{1, "/dev/full"}});
  }
}

TEST_F(CommandLine, WrongCallsShowTheUsage) {
  using Case = std::tuple<const char*, int, const char*>;
  for (const auto& [call, exitCode, text] :
       {Case{"--bogus", 2, "Usage:"}, Case{"--help", 0, "Usage:"},
        Case{"--version", 0, "VELT-SA 3.0.0\n"}, Case{"--guardian", 2, ""}}) {
    const Result result = Call(call);
    EXPECT_TRUE(result.exitCode == exitCode && result.Says(text)) << result.said;
  }
}

TEST_F(CommandLine, WithoutADisplayItSaysWhatToDo) {
  XDesktop frozen;
  frozen.Freeze();
  for (const std::string& surroundings :
       {std::string("DISPLAY="), std::string("DISPLAY=:54321"), std::string("WAYLAND_DISPLAY=none"),
        "DISPLAY=" + frozen.Display()}) {
    ExpectLine(1, "--headless", "", surroundings);
  }
  // Settings can be reset all the same, though nobody can dismiss a box.
  ExpectLine(0, "restored to their defaults", "/RESET", "DISPLAY=:54321");
}

TEST_F(CommandLine, AHeadlessRunThatCannotBeSaysWhy) {
  folder.Write("occupied", "mine");
  const std::string headless = "--headless --seconds 1 ";
  ExpectLine(1, "not a sound file", headless + "--input occupied");
  ExpectLine(1, "Not a directory", headless + "--data-folder occupied");
  ExpectLine(1, "/proc/none", headless + "--data-folder /proc/none");
  EXPECT_EQ(folder.Read("occupied"), "mine");
  const Process first = Start("--headless --seconds 20");
  ASSERT_TRUE(WaitUntil([] { return fs::exists("velt-sa.lock"); }, std::chrono::seconds(10)));
  for (const char* more : {"", "--screenshot x.png", "--input tone.wav"}) {
    ExpectLine(1, "Another", headless + more);
  }
}

TEST_F(CommandLine, ErrorsThatNobodyReadsHoldNoWindow) {
  ASSERT_EQ(::mkfifo("pipe", 0600), 0);
  const int pipe = ::open("pipe", O_RDWR | O_NONBLOCK | O_CLOEXEC);
  while (::write(pipe, "full", 1) > 0) {
  }
  const SerialLine line;
  const int terminal = ::open(line.Path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  ::tcflow(terminal, TCOOFF);  // as Ctrl+S does it
  fs::create_directory("KALVARO");
  for (const fs::path& errors : {fs::path("pipe"), fs::path(line.Path())}) {
    folder.Write("KALVARO/VELT-SA.ini", "damaged");  // which is told
    // Qt itself has much to say, too, before its messages are taken over.
    EXPECT_EQ(Call("--headless --seconds 1", "QT_DEBUG_PLUGINS=1", {{2, errors}}).exitCode, 0);
    EXPECT_TRUE(fs::remove("KALVARO/VELT-SA.ini.damaged"));
  }
  for (const int opened : {pipe, terminal}) ::close(opened);
}

TEST_F(CommandLine, NamesAreTheBytesThatWereGivenAndAHeadlessRunSavesItsSettings) {
  WriteToneFile("caf\xe9.wav", 1000, 0.1);
  EXPECT_EQ(Call("--analyse caf\xe9.wav --csv caf\xe9.csv --image caf\xe9.png").exitCode, 0);
  const Result result = Call(
      "--headless --seconds 1 --input=caf\xe9.wav --data-folder caf\xe9 --log caf\xe9.log "
      "--screenshot caf\xe9-window.png");
  EXPECT_EQ(result.exitCode, 0) << result.said;
  EXPECT_TRUE(fs::exists("caf\xe9.csv") && fs::exists("caf\xe9/WAV") && fs::exists("caf\xe9.log"));
  EXPECT_TRUE(IsPicture("caf\xe9.png") && IsPicture("caf\xe9-window.png"));
  EXPECT_NE(folder.Read("caf\xe9/VELT-SA.ini").find("Version=3.0.0"), std::string::npos);
  EXPECT_EQ(Call("--headless --seconds 1 --screenshot /nowhere/x.png").exitCode, 1);
}

TEST_F(CommandLine, NoFileIsWrittenOverThatIsReadOrWrittenToo) {
  const std::string sound = folder.Read("tone.wav");
  fs::create_symlink("tone.wav", "link.wav");
  fs::create_hard_link("tone.wav", "second.wav");
  fs::create_symlink("later.txt", "later-link");  // nothing there yet
  fs::create_directory("sub");
  for (const char* call :
       {"--analyse tone.wav --image link.wav", "--analyse link.wav --csv second.wav",
        "--analyse tone.wav --csv x --image sub/../x", "--analyse tone.wav --spectrogram link.wav",
        "--analyse tone.wav --csv later-link --image later.txt",
        "--headless --seconds 1 --input tone.wav --screenshot second.wav",
        "--headless --seconds 1 --input tone.wav --log sub/../tone.wav"}) {
    ExpectLine(2, "would write over", call);
    EXPECT_EQ(folder.Read("tone.wav"), sound) << call;
  }
}

TEST_F(CommandLine, AFullDiskKeepsTheFileBefore) {
  const FullDisk disk;
  const TempFolder results;
  for (const std::string call :
       {"--analyse tone.wav --csv ", "--analyse tone.wav --image ",
        "--analyse tone.wav --spectrogram ", "--headless --demo --seconds 1 --screenshot "}) {
    results.Write("o", "old");
    disk.Fill();
    EXPECT_EQ(Call(call + (results / "o").string()).exitCode, 1) << call;
    disk.Free();
    EXPECT_EQ(results.Read("o"), "old");
    EXPECT_EQ(results.Entries(), 1) << call;
  }
}

TEST_F(CommandLine, WhatIsNoRegularFileIsWrittenStraight) {
  fs::create_symlink("/dev/null", "null");
  EXPECT_EQ(Call("--analyse tone.wav --image null").exitCode, 0);
  EXPECT_TRUE(fs::is_character_file("null"));
  // Standard output is a file here; lines and summary stand in it one after the other.
  const Result result = Call("--analyse tone.wav --csv /dev/stdout");
  EXPECT_TRUE(result.said.starts_with("1,")) << result.said;
  EXPECT_TRUE(result.Says("\n8,") && result.Says("\nDuration: 0.100 s")) << result.said;
}

TEST_F(CommandLine, PresetsAreGivenAwayAndTakenOver) {
  fs::create_directory("d");
  const auto call = [this](const std::string& rest) { return Call(rest + " --data-folder d"); };
  folder.Write("d/FreqSets.ini",
               "top\n1800000\nb\n1\nc\n1\nd\n1\ne\n1\nf\n1\ng\n1\nh\n1\ni\n1\nj\n1\n");
  EXPECT_EQ(call("--export-presets old.csv").exitCode, 0);
  const std::string table = folder.Read("old.csv");
  EXPECT_NE(table.find("\n0,top,0,1800,LSB\r\n"), std::string::npos);
  EXPECT_TRUE(fs::exists("d/FreqSets.ini") && !fs::exists("d/ExpandPresets.ini"));

  const std::string other = std::regex_replace(table, std::regex(",top,"), ",M\xfcll,");
  folder.Write("other.csv", other);
  folder.Write("wrong.csv", other + "x");
  ExpectLine(1, "wrong.csv, line 62, band", "--import-presets wrong.csv --data-folder d");
  EXPECT_EQ(call("--import-presets other.csv").exitCode, 0);
  EXPECT_NE(folder.Read("d/ExpandPresets.ini.bak").find("\ntop\r\n1800\r\n"), std::string::npos);
  EXPECT_EQ(call("--export-presets again.csv").exitCode, 0);
  EXPECT_EQ(folder.Read("again.csv"), other);
  EXPECT_EQ(call("--export-presets d/../d/ExpandPresets.ini").exitCode, 2);
  EXPECT_EQ(call("--import-presets other.csv --demo").exitCode, 2);
  EXPECT_EQ(call("--export-presets /dev/full").exitCode, 1);
  const std::string kept = folder.Read("d/ExpandPresets.ini");
  fs::remove("velt-sa.lock");
  const Process running = Start("--headless --seconds 20");
  ASSERT_TRUE(WaitUntil([] { return fs::exists("velt-sa.lock"); }, std::chrono::seconds(10)));
  EXPECT_TRUE(call("--import-presets old.csv").Says("Another VELT-SA"));
  EXPECT_EQ(folder.Read("d/ExpandPresets.ini"), kept);
  folder.Write("d/ExpandPresets.ini", "damaged");
  EXPECT_EQ(call("--export-presets again.csv").exitCode, 1);
  EXPECT_EQ(folder.Read("again.csv"), other);
}

TEST_F(CommandLine, TheStoredScaleOfTheWindowMultipliesTheDesktops) {
  fs::create_directory("data");
  // The size is as the picture's header says it.
  for (const auto& [file, stored, environment, size] :
       {std::tuple{"VELT-SA.ini", "150", "QT_SCALE_FACTOR=2", "\x0A\x44\x00\x00\x01\xEC"},
        {"VELT-SA.ini", "130", "QT_SCALE_FACTOR=2", "\x06\xD8\x00\x00\x01\x48"},
        {"VELT-SA.ini.bak", "200", "", "\x06\xD8\x00\x00\x01\x48"}}) {
    folder.Write("data/VELT-SA.ini", "damaged");
    folder.Write(std::string("data/") + file, std::string("[Window]\nScale=") + stored + "\n");
    Call("--demo --headless --seconds 1 --screenshot window.png --data-folder data", environment);
    EXPECT_EQ(folder.Read("window.png").substr(18, 6), std::string(size, 6)) << stored;
  }
}

}  // namespace
}  // namespace velt

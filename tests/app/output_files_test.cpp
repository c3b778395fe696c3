// What the program writes where a user asked for it, and what it must never write over.
#include "adapters/files/full_disk.h"
#include "app/program_call.h"

namespace velt {
namespace {

namespace fs = std::filesystem;

TEST_F(CommandLine, NoFileIsWrittenOverThatIsReadOrWrittenToo) {
  WriteToneFile(Path("tone.wav"), 1000, 0.1);
  const std::string sound = folder.Read("tone.wav");
  fs::create_symlink("tone.wav", Path("link.wav"));
  fs::create_hard_link(Path("tone.wav"), Path("second.wav"));
  fs::create_symlink("later.txt", Path("later-link"));  // nothing there yet
  fs::create_directory(Path("sub"));
  const std::string tone = Path("tone.wav");
  const std::vector<std::string> headless{"--headless", "--seconds", "1", "--input", tone};
  for (const auto& [arguments, more] :
       std::initializer_list<std::pair<std::vector<std::string>, std::vector<std::string>>>{
           {{"--analyse", tone}, {"--csv", tone}},
           {{"--analyse", tone}, {"--image", Path("link.wav")}},
           {{"--analyse", Path("link.wav")}, {"--csv", Path("second.wav")}},
           {{"--analyse", tone}, {"--csv", Path("x"), "--image", Path("sub/../x")}},
           {{"--analyse", tone}, {"--csv", Path("later-link"), "--image", Path("later.txt")}},
           {headless, {"--screenshot", Path("second.wav")}},
           {headless, {"--log", Path("sub/../tone.wav")}}}) {
    std::vector<std::string> call = arguments;
    call.insert(call.end(), more.begin(), more.end());
    const Result result = Call(call);
    EXPECT_EQ(result.exitCode, 2) << more.back();
    EXPECT_EQ(result.Lines(), 1) << result.said;
    EXPECT_EQ(folder.Read("tone.wav"), sound) << more.back();
  }
  EXPECT_EQ(Call({"--analyse", tone, "--csv", Path("other.csv")}).exitCode, 0);
}

TEST_F(CommandLine, AFullDiskKeepsTheFileBefore) {
  WriteToneFile(Path("tone.wav"), 1000, 1.0);
  fs::create_directory(Path("disk"));
  FullDisk disk(Path("disk"));
  const TempFolder& files = folder;
  for (const char* name : {"disk/o.csv", "disk/o.png", "disk/window.png"}) files.Write(name, "old");
  for (const std::vector<std::string>& call : std::vector<std::vector<std::string>>{
           {"--analyse", Path("tone.wav"), "--csv", Path("disk/o.csv")},
           {"--analyse", Path("tone.wav"), "--image", Path("disk/o.png")},
           {"--headless", "--demo", "--seconds", "1", "--screenshot", Path("disk/window.png")}}) {
    disk.Fill();
    const Result result = Call(call);
    EXPECT_EQ(result.exitCode, 1) << call.back();
    disk.Free();
    EXPECT_EQ(ReadText(call.back()), "old");
    const auto entries = std::distance(fs::directory_iterator(Path("disk")), {});
    EXPECT_EQ(entries, 3) << call.back();
    // Where files cannot grow the program cannot even say so into one.
    if (disk.Error() != ENOSPC) continue;
    EXPECT_EQ(result.Lines(), 1) << result.said;
    EXPECT_TRUE(result.Says(call.back()) && result.Says("No space left")) << result.said;
  }
}

TEST_F(CommandLine, AStandardOutputThatIsFullIsTold) {
  WriteToneFile(Path("tone.wav"), 1000, 0.1);
  Process::Options surroundings = Surroundings();
  surroundings.files = {{1, "/dev/full"}};
  for (const std::vector<std::string>& call : std::vector<std::vector<std::string>>{
           {"--help"}, {"--version"}, {"--analyse", Path("tone.wav")}}) {
    const Result result = Call(call, surroundings);
    EXPECT_EQ(result.exitCode, 1) << call[0];
    EXPECT_TRUE(result.Lines() == 1 && result.Says("No space left")) << result.said;
  }
}

TEST_F(CommandLine, WhatIsNoRegularFileIsWrittenStraight) {
  WriteToneFile(Path("tone.wav"), 1000, 0.1);
  fs::create_symlink("/dev/null", Path("null"));
  EXPECT_EQ(Call({"--analyse", Path("tone.wav"), "--image", Path("null")}).exitCode, 0);
  EXPECT_TRUE(fs::is_character_file(Path("null")));
  // Standard output is a file here; lines and summary stand in it one after the other.
  const Result result = Call({"--analyse", Path("tone.wav"), "--csv", "/dev/stdout"});
  EXPECT_TRUE(result.said.starts_with("1,")) << result.said;
  EXPECT_TRUE(result.Says("\n8,") && result.Says("\nDuration: 0.100 s")) << result.said;
}

TEST_F(CommandLine, AnInterruptedAnalysisLeavesNothing) {
  // An hour of silence that takes no place on the disk.
  WriteToneFile(Path("long.wav"), 1000, 0.1);
  fs::resize_file(Path("long.wav"), uintmax_t{3600} * 44100 * 2);
  fs::create_directory(Path("results"));
  const auto results = [this] {
    return std::distance(fs::directory_iterator(Path("results")), {});
  };
  const auto process =
      Start({"--analyse", Path("long.wav"), "--csv", Path("results/o.csv")}, Surroundings());
  ASSERT_TRUE(WaitUntil([&] { return results() == 1; }, std::chrono::seconds(10)));
  process->Signal(ProcessSignal::Terminate);
  const Result result = End(*process);
  EXPECT_EQ(result.exitCode, 1) << result.said;
  EXPECT_EQ(results(), 0);
}

}  // namespace
}  // namespace velt

// What the program writes where a user asked for it, and what it must never write over.
#include "adapters/files/full_disk.h"
#include "app/program_call.h"

namespace velt {
namespace {

TEST_F(CommandLine, NoFileIsWrittenOverThatIsReadOrWrittenToo) {
  WriteToneFile("tone.wav", 1000, 0.1);
  const std::string sound = folder.Read("tone.wav");
  fs::create_symlink("tone.wav", "link.wav");
  fs::create_hard_link("tone.wav", "second.wav");
  fs::create_symlink("later.txt", "later-link");  // nothing there yet
  fs::create_directory("sub");
  for (const char* call :
       {"--analyse tone.wav --csv tone.wav", "--analyse tone.wav --image link.wav",
        "--analyse link.wav --csv second.wav", "--analyse tone.wav --csv x --image sub/../x",
        "--analyse tone.wav --csv later-link --image later.txt",
        "--headless --seconds 1 --input tone.wav --screenshot second.wav",
        "--headless --seconds 1 --input tone.wav --log sub/../tone.wav"}) {
    const Result result = Call(call);
    EXPECT_EQ(result.exitCode, 2) << call;
    EXPECT_TRUE(result.IsOneLineWith("would write over")) << result.said;
    EXPECT_EQ(folder.Read("tone.wav"), sound) << call;
  }
  EXPECT_EQ(Call("--analyse tone.wav --csv other.csv").exitCode, 0);
}

TEST_F(CommandLine, AFullDiskKeepsTheFileBefore) {
  WriteToneFile("tone.wav", 1000, 1.0);
  const FullDisk disk;
  const TempFolder results;
  for (const std::string call : {"--analyse tone.wav --csv ", "--analyse tone.wav --image ",
                                 "--headless --demo --seconds 1 --screenshot "}) {
    results.Write("o", "old");
    disk.Fill();
    EXPECT_EQ(Call(call + (results / "o").string()).exitCode, 1) << call;
    disk.Free();
    EXPECT_EQ(results.Read("o"), "old");
    EXPECT_EQ(results.Entries(), 1) << call;
  }
}

TEST_F(CommandLine, WhatIsNoRegularFileIsWrittenStraight) {
  WriteToneFile("tone.wav", 1000, 0.1);
  fs::create_symlink("/dev/null", "null");
  EXPECT_EQ(Call("--analyse tone.wav --image null").exitCode, 0);
  EXPECT_TRUE(fs::is_character_file("null"));
  // Standard output is a file here; lines and summary stand in it one after the other.
  const Result result = Call("--analyse tone.wav --csv /dev/stdout");
  EXPECT_TRUE(result.said.starts_with("1,")) << result.said;
  EXPECT_TRUE(result.Says("\n8,") && result.Says("\nDuration: 0.100 s")) << result.said;
}

TEST_F(CommandLine, AnInterruptedAnalysisLeavesNothing) {
  // An hour of silence that takes no place on the disk.
  WriteToneFile("long.wav", 1000, 0.1);
  fs::resize_file("long.wav", uintmax_t{3600} * 44100 * 2);
  const TempFolder results;
  Process process = Start("--analyse long.wav --csv " + (results / "o.csv").string());
  ASSERT_TRUE(WaitUntil([&] { return results.Entries() == 1; }, std::chrono::seconds(10)));
  process.Signal(ProcessSignal::Terminate);
  const Result result = End(process);
  EXPECT_EQ(result.exitCode, 1) << result.said;
  EXPECT_EQ(results.Entries(), 0);
}

}  // namespace
}  // namespace velt

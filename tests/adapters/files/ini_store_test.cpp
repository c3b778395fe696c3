#include "adapters/files/ini_store.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>

#include "adapters/files/disk_files.h"
#include "support/temp_folder.h"

namespace velt {
namespace {

namespace fs = std::filesystem;
using std::string;

constexpr const char* kGood = "[S]\nKey=good\n";

struct CountingLog : Log {
  void Write(LogLevel, const char*, std::string_view) override { ++lines; }
  int lines = 0;
};

// A disk whose files cannot be read for a while.
struct FailingFiles : DiskFiles {
  FileContent Read(const fs::path& path) const override {
    return readError != 0 ? FileContent{readError, ""} : DiskFiles::Read(path);
  }
  int readError = 0;
};

struct IniStoreTest : testing::Test {
  TempFolder folder;
  FailingFiles files;
  CountingLog log;
  fs::path path = folder / "s.ini";

  IniStore Open() { return {path, files, log}; }
  std::optional<string> Key() { return Open().Get("S", "Key"); }
  int SaveKey(const string& text) {
    IniStore store = Open();
    store.Save("S", "Key", text);
    return store.Commit();
  }
};

TEST_F(IniStoreTest, EveryTextComesBackAndPlainOnesStayPlain) {
  for (const char* plain :
       {"-2147483633", "", "a=b;c", "C:\\x\\n \"q\"", "\xC3\xA9\xFF", "[x]", ";", "in\tside"}) {
    ASSERT_EQ(SaveKey(plain), 0);
    EXPECT_EQ(folder.Read("s.ini"), string("[S]\nKey=") + plain + "\n");
    EXPECT_EQ(Key(), plain);
  }
  for (const string& text : {string(" x"), string("x\t"), string("\""), string("\"\\x41\""),
                             string("a\nb\r\nc\\"), string("\0\x1f\x7f", 3)}) {
    ASSERT_EQ(SaveKey(text), 0);
    EXPECT_EQ(Key(), text);
  }
}

TEST_F(IniStoreTest, WhatOthersWroteSurvivesUntilAllIsDeleted) {
  const string before =
      "; mine\r\n[Other]\r\nKey = 1\r\n\r\n[S]\r\n Key=\"old\"\r\nUnknown=\"a\\q\"\r\n";
  folder.Write("s.ini", "\xEF\xBB\xBF" + before + "\r\n[Last]\r\n");
  IniStore store = Open();
  EXPECT_EQ(store.Get("Other", "Key"), "1");
  store.Save("S", "Key", "old");
  store.Save("S", "New", "2");
  store.Save("More", "Key", "3");
  // What reached the file while the program ran stays too.
  std::ofstream(path, std::ios::app) << "Late=4\r\n";
  ASSERT_EQ(store.Commit(), 0);
  EXPECT_EQ(folder.Read("s.ini"),
            before + "New=2\r\n\r\n[Last]\r\nLate=4\r\n\r\n[More]\r\nKey=3\r\n");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(store.DeleteAll(), 0);
    EXPECT_EQ(store.Get("Other", "Key"), std::nullopt);
    EXPECT_EQ(store.Commit(), 0);
    EXPECT_EQ(folder.Entries(), 0);
  }
}

TEST_F(IniStoreTest, ADamagedFileIsKeptAndTheBackupTakesItsPlace) {
  // Not so without damage: a file or a section that is missing means the defaults.
  folder.Write("s.ini.bak", kGood);
  EXPECT_EQ(Key(), std::nullopt);
  folder.Write("s.ini", "[Other]\n");
  EXPECT_EQ(Key(), std::nullopt);
  EXPECT_EQ(log.lines, 0);
  int round = 0;
  for (const string& damaged :
       {string(), string("[S]\nKey=ba"), string("[S]\nKey=b\0d\n", 12), string("[S\nKey=bad\n"),
        string("[S]\nKey\n"), string("[S]\n=bad\n"), string("Key=bad\n")}) {
    folder.Write("s.ini", damaged);
    folder.Write("s.ini.bak", kGood);
    EXPECT_EQ(Key(), "good") << damaged;
    const string number = ++round == 1 ? "" : "." + std::to_string(round);
    EXPECT_EQ(folder.Read("s.ini.damaged" + number), damaged);
    EXPECT_GE(log.lines, round);
    // Even when the program ended there, the next start has the settings.
    EXPECT_EQ(Key(), "good");
  }
  folder.Write("s.ini", "");
  folder.Write("s.ini.bak", "rubbish");
  EXPECT_EQ(Key(), std::nullopt);
  EXPECT_EQ(folder.Read("s.ini.bak.damaged"), "rubbish");
}

TEST_F(IniStoreTest, WhatCannotBeReadOrWrittenIsLeftAloneAndToldOnce) {
  folder.Write("s.ini", kGood);
  for (const int readError : {EIO, 0}) {
    path = readError != 0 ? path : folder / "s.ini/below";
    log.lines = 0;
    files.readError = readError;
    IniStore store = Open();
    files.readError = 0;
    EXPECT_EQ(store.Get("S", "Key"), std::nullopt);
    store.Save("S", "Key", "2");
    for (int i = 0; i < 2; ++i) EXPECT_EQ(store.Commit(), readError != 0 ? EIO : ENOTDIR);
    EXPECT_EQ(store.Get("S", "Key"), "2");
    EXPECT_EQ(log.lines, 1);
    EXPECT_EQ(folder.Read("s.ini"), kGood);
  }
}

TEST_F(IniStoreTest, KilledAtAnyMomentTheFileAndItsBackupAreWhole) {
  path = folder / "new/folder/s.ini";
  ASSERT_EQ(SaveKey("1") + SaveKey("2"), 0);
  for (int round = 0; round < 40; ++round) {
    const pid_t child = ::fork();
    for (int n = 0; child == 0; ++n) SaveKey(string(20000, static_cast<char>('a' + n % 26)));
    // No wait for anything: the moment of the end is what varies.
    ::usleep(static_cast<useconds_t>(3000 + round * 137));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    for (const char* end : {"", ".bak"}) {
      ASSERT_TRUE(IniText::Parse(folder.Read(string("new/folder/s.ini") + end))) << end;
    }
  }
  EXPECT_EQ(Key().value_or("").size(), 20000U);
}

}  // namespace
}  // namespace velt

#include "adapters/files/ini_store.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>

#include "adapters/files/disk_files.h"
#include "adapters/files/memory_store.h"
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

// Files of which reading or renaming can be made to fail.
struct FailingFiles : DiskFiles {
  FileContent Read(const fs::path& path) const override {
    return readError != 0 ? FileContent{readError, ""} : DiskFiles::Read(path);
  }
  int Rename(const fs::path& from, const fs::path& to) override {
    return renameError != 0 ? renameError : DiskFiles::Rename(from, to);
  }
  int readError = 0;
  int renameError = 0;
};

struct IniStoreTest : testing::Test {
  ScratchFolder folder;
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
  for (const char* plain : {"True", "-2147483633", "0.1", "3.0.0", "", "a=b;c", "C:\\x\\n \"q\"",
                            "\xC3\xA9\xFF", "[x]", ";", "in\tside"}) {
    ASSERT_EQ(SaveKey(plain), 0);
    EXPECT_EQ(folder.Read("s.ini"), string("[S]\nKey=") + plain + "\n");
    EXPECT_EQ(Key(), plain);
  }
  for (const string& text : {string(" x"), string("x\t"), string("\""), string("\"q\""),
                             string("\"\\x41\""), string("a\nb\r\nc\\"), string("\0\x1f\x7f", 3)}) {
    ASSERT_EQ(SaveKey(text), 0);
    EXPECT_EQ(Key(), text);
  }
  IniStore store = Open();
  for (const char* key : {"", " a", "a\t", "a=b", ";a", "[a", "a\nb"}) store.Save("S", key, "");
  store.Save("a\n", "a", "");
  EXPECT_EQ(log.lines, 8) << "names that the file cannot hold are refused";
}

TEST_F(IniStoreTest, WhatOthersWroteSurvivesUntilAllIsDeleted) {
  const string before =
      "; mine\r\n[Other]\r\nKey = 1\r\n\r\n[S]\r\n Key=\"old\"\r\nUnknown=\"a\\q\"\r\n";
  folder.Write("s.ini", "\xEF\xBB\xBF" + before + "\r\n[Last]\r\n");
  IniStore store = Open();
  EXPECT_EQ(store.Get("S", "Unknown"), "\"a\\q\"");
  EXPECT_EQ(store.Get("Other", "Key"), "1");
  store.Save("S", "Key", "old");
  store.Save("S", "New", "2");
  store.Save("More", "Key", "3");
  EXPECT_EQ(store.Get("S", "New"), "2");
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
  int round = 0;
  for (const string& damaged :
       {string(), string("[S]\nKey=ba"), string("[S]\nKey=b\0d\n", 12), string("[S]\nKey=b\x7f\n"),
        string("[S\nKey=bad\n"), string("[S]\nKey\n"), string("[S]\n=bad\n"), string("Key=bad\n"),
        string("[S]\rKey=bad\n")}) {
    folder.Write("s.ini", damaged);
    folder.Write("s.ini.bak", kGood);
    log.lines = 0;
    EXPECT_EQ(Key(), "good") << damaged;
    EXPECT_GE(log.lines, 1);
    const string number = ++round == 1 ? "" : "." + std::to_string(round);
    EXPECT_EQ(folder.Read("s.ini.damaged" + number), damaged);
    // Even when the program ended there, the next start has the settings.
    EXPECT_EQ(Key(), "good");
    ASSERT_EQ(SaveKey("better"), 0);
    EXPECT_EQ(folder.Read("s.ini.bak"), kGood);
  }
  folder.Write("s.ini", "");
  folder.Write("s.ini.bak", "rubbish");
  EXPECT_EQ(Key(), std::nullopt);
  EXPECT_EQ(folder.Read("s.ini.bak.damaged"), "rubbish");
}

TEST_F(IniStoreTest, AMissingFileOrSectionNeverUsesTheBackup) {
  folder.Write("s.ini.bak", kGood);
  EXPECT_EQ(Key(), std::nullopt);
  ASSERT_EQ(SaveKey("1"), 0);
  EXPECT_EQ(folder.Read("s.ini.bak"), kGood);
  folder.Write("s.ini", "\n");
  EXPECT_EQ(Key(), std::nullopt);
  EXPECT_EQ(log.lines, 0);
}

TEST_F(IniStoreTest, WhatCannotBeReadSetAsideOrWrittenIsLeftAloneAndToldOnce) {
  folder.Write("below", "");
  fs::create_directory(folder / "folder.ini");
  struct Case {
    const char *name, *bytes;
    int readError, renameError, commitError;
  };
  for (const Case& c :
       {Case{"s.ini", kGood, EACCES, 0, EACCES}, Case{"s.ini", kGood, EIO, 0, EIO},
        Case{"s.ini", "damaged", 0, EROFS, EROFS}, Case{"folder.ini", kGood, 0, 0, EISDIR},
        Case{"below/s.ini", kGood, 0, 0, ENOTDIR}}) {
    path = folder / c.name;
    folder.Write("s.ini", c.bytes);
    folder.Write("s.ini.bak", "[S]\nKey=old\n");
    files.readError = c.readError;
    files.renameError = c.renameError;
    log.lines = 0;
    IniStore store = Open();
    files.readError = files.renameError = 0;
    EXPECT_EQ(store.Get("S", "Key"), std::nullopt) << c.name;
    store.Save("S", "Key", "2");
    for (int i = 0; i < 2; ++i) EXPECT_EQ(store.Commit(), c.commitError) << c.name;
    EXPECT_EQ(store.Get("S", "Key"), "2");
    EXPECT_EQ(log.lines, 1) << c.name;
    EXPECT_EQ(folder.Read("s.ini"), c.bytes);
    EXPECT_EQ(folder.Read("s.ini.bak"), "[S]\nKey=old\n");
  }
  path = folder / "a/b/s.ini";
  EXPECT_EQ(SaveKey("1"), 0);
  EXPECT_EQ(Key(), "1");
}

TEST_F(IniStoreTest, KilledAtAnyMomentTheFileAndItsBackupAreWhole) {
  ASSERT_EQ(SaveKey("1") + SaveKey("2"), 0);
  for (int round = 0; round < 40; ++round) {
    const pid_t child = ::fork();
    if (child == 0) {
      for (int n = 0;; ++n) {
        IniStore store = Open();
        for (const char* key : {"First", "Last"}) store.Save("S", key, std::to_string(n));
        store.Commit();
      }
    }
    // No wait for anything: the moment of the end is what varies.
    ::usleep(static_cast<useconds_t>(3000 + round * 137));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    for (const char* name : {"s.ini", "s.ini.bak"}) {
      const auto whole = IniText::Parse(folder.Read(name));
      ASSERT_TRUE(whole) << name;
      ASSERT_EQ(whole->Get("S", "First"), whole->Get("S", "Last"));
    }
  }
  EXPECT_NE(Open().Get("S", "Last"), std::nullopt);
}

TEST(MemoryStore, KeepsTextsUntilDeleted) {
  MemoryStore store;
  for (const char* text : {"1", "2"}) store.Save("A", "k", text);
  EXPECT_EQ(store.Get("A", "k"), "2");
  EXPECT_EQ(store.Get("B", "k"), std::nullopt);
  store.DeleteAll();
  EXPECT_EQ(store.Get("A", "k"), std::nullopt);
}

}  // namespace
}  // namespace velt

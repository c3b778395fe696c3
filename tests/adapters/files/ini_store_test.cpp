#include "adapters/files/ini_store.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <thread>

#include "adapters/files/disk_files.h"
#include "adapters/files/memory_store.h"
#include "support/temp_folder.h"

namespace velt {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSection = "VELT-SA";

struct CountingLog : Log {
  void Write(LogLevel, const char*, std::string_view) override { ++lines; }
  int lines = 0;
};

// Files whose chosen operations fail.
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
  TempFolder folder;
  FailingFiles files;
  CountingLog log;
  fs::path path = folder / "s.ini";

  IniStore Open() { return {path, files, log}; }
  int SaveOne(const std::string& text) {
    IniStore store = Open();
    store.Save(kSection, "Key", text);
    return store.Commit();
  }
};

TEST_F(IniStoreTest, EveryTextComesBackAndPlainOnesStayPlain) {
  for (const char* plain : {"True", "-2147483633", "0.1", "3.0.0", "", "a=b;c", "C:\\x\\n \"q\"",
                            "\xC3\xA9\xFF", "[x]", ";", "in\tside"}) {
    ASSERT_EQ(SaveOne(plain), 0);
    EXPECT_EQ(folder.Read("s.ini"), std::string("[VELT-SA]\nKey=") + plain + "\n");
    EXPECT_EQ(Open().Get(kSection, "Key"), plain);
  }
  for (const std::string& text :
       {std::string(" x"), std::string("x\t"), std::string("\""), std::string("\"q\""),
        std::string("\"\\x41\""), std::string("a\nb\r\nc\\"), std::string("\0\x1f\x7f\x1b[0m", 7),
        std::string("\n")}) {
    ASSERT_EQ(SaveOne(text), 0);
    EXPECT_EQ(Open().Get(kSection, "Key"), text);
  }
  EXPECT_EQ(log.lines, 0);
}

TEST_F(IniStoreTest, WhatOthersWroteSurvives) {
  folder.Write("s.ini",
               "\xEF\xBB\xBF; mine\r\n[Other]\r\nKey = 1\r\n\r\n[VELT-SA]\r\n Key=\"old\"\r\n"
               "Unknown=\"a\\q\"\r\n\r\n[Last]\r\n");
  IniStore store = Open();
  EXPECT_EQ(store.Get(kSection, "Unknown"), "\"a\\q\"");
  EXPECT_EQ(store.Get("Other", "Key"), "1");
  EXPECT_EQ(store.Get("other", "Key"), std::nullopt);
  store.Save(kSection, "Key", "old");
  store.Save(kSection, "New", "2");
  store.Save("More", "Key", "3");
  EXPECT_EQ(store.Get(kSection, "New"), "2");
  // What reached the file while the program ran stays too.
  std::ofstream(path, std::ios::app) << "Late=4\r\n";
  ASSERT_EQ(store.Commit(), 0);
  EXPECT_EQ(folder.Read("s.ini"),
            "; mine\r\n[Other]\r\nKey = 1\r\n\r\n[VELT-SA]\r\n Key=\"old\"\r\n"
            "Unknown=\"a\\q\"\r\nNew=2\r\n\r\n[Last]\r\nLate=4\r\n\r\n[More]\r\nKey=3\r\n");
  EXPECT_EQ(store.DeleteAll(), 0);
  EXPECT_EQ(folder.Entries(), 0U);
  EXPECT_EQ(store.Get("Other", "Key"), std::nullopt);
  EXPECT_EQ(store.DeleteAll(), 0);
  EXPECT_EQ(store.Commit(), 0);
  EXPECT_EQ(folder.Entries(), 0U);
}

TEST_F(IniStoreTest, ADamagedFileIsKeptAndTheBackupTakesItsPlace) {
  const std::string sound = "[VELT-SA]\nKey=good\n";
  int round = 0;
  for (const std::string& damaged :
       {std::string(), std::string("[VELT-SA]\nKey=ba"), std::string("[VELT-SA]\nKey=b\0d\n", 18),
        std::string("[VELT-SA]\nKey=b\x7f\n"), std::string("[VELT-SA\nKey=bad\n"),
        std::string("[VELT-SA]\nKey\n"), std::string("[VELT-SA]\n=bad\n"), std::string("Key=bad\n"),
        std::string("[VELT-SA]\rKey=bad\n")}) {
    ++round;
    folder.Write("s.ini", damaged);
    folder.Write("s.ini.bak", sound);
    log.lines = 0;
    {
      const IniStore store = Open();
      EXPECT_EQ(store.Get(kSection, "Key"), "good") << round;
      EXPECT_GE(log.lines, 1);
    }
    const std::string kept =
        round == 1 ? "s.ini.damaged" : "s.ini.damaged." + std::to_string(round);
    EXPECT_EQ(folder.Read(kept), damaged);
    // Even when the program ends here, the next start has the settings.
    EXPECT_EQ(Open().Get(kSection, "Key"), "good");
    ASSERT_EQ(SaveOne("better"), 0);
    EXPECT_EQ(folder.Read("s.ini.bak"), sound);
  }
}

TEST_F(IniStoreTest, ADamagedBackupMeansDefaultsAndIsKeptToo) {
  folder.Write("s.ini", "");
  folder.Write("s.ini.bak", "rubbish");
  EXPECT_EQ(Open().Get(kSection, "Key"), std::nullopt);
  ASSERT_EQ(SaveOne("1"), 0);
  ASSERT_EQ(SaveOne("2"), 0);
  EXPECT_EQ(folder.Read("s.ini.bak.damaged"), "rubbish");
  EXPECT_EQ(folder.Read("s.ini.damaged"), "");
}

TEST_F(IniStoreTest, AMissingFileOrSectionNeverUsesTheBackup) {
  folder.Write("s.ini.bak", "[VELT-SA]\nKey=old\n");
  EXPECT_EQ(Open().Get(kSection, "Key"), std::nullopt);
  ASSERT_EQ(SaveOne("1"), 0);
  EXPECT_EQ(folder.Read("s.ini.bak"), "[VELT-SA]\nKey=old\n");
  folder.Write("s.ini", "\n");
  EXPECT_EQ(Open().Get(kSection, "Key"), std::nullopt);
  EXPECT_EQ(log.lines, 0);
}

TEST_F(IniStoreTest, WhatCannotBeReadOrSetAsideIsNeverWrittenOver) {
  struct Case {
    const char* bytes;
    int readError;
    int renameError;
  };
  for (const Case& c : {Case{"[VELT-SA]\nKey=1\n", EACCES, 0}, Case{"[VELT-SA]\nKey=1\n", EIO, 0},
                        Case{"damaged", 0, EROFS}}) {
    folder.Write("s.ini", c.bytes);
    folder.Write("s.ini.bak", "[VELT-SA]\nKey=old\n");
    files.readError = c.readError;
    files.renameError = c.renameError;
    log.lines = 0;
    IniStore store = Open();
    EXPECT_EQ(store.Get(kSection, "Key"), std::nullopt);
    files.readError = 0;
    files.renameError = 0;
    store.Save(kSection, "Key", "2");
    EXPECT_EQ(store.Get(kSection, "Key"), "2");
    EXPECT_EQ(store.Commit(), c.readError + c.renameError);
    EXPECT_EQ(log.lines, 1);
    EXPECT_EQ(folder.Read("s.ini"), c.bytes);
    EXPECT_EQ(folder.Read("s.ini.bak"), "[VELT-SA]\nKey=old\n");
  }
  path = folder / "as-folder.ini";
  fs::create_directory(path);
  EXPECT_EQ(SaveOne("1"), EISDIR);
  EXPECT_TRUE(fs::is_empty(path));
}

TEST_F(IniStoreTest, FoldersAreMadeAndAnUnwritableOneIsToldOnce) {
  path = folder / "a/b/s.ini";
  EXPECT_EQ(SaveOne("1"), 0);
  EXPECT_EQ(Open().Get(kSection, "Key"), "1");
  folder.Write("file", "");
  path = folder / "file/s.ini";
  IniStore store = Open();
  store.Save(kSection, "Key", "1");
  EXPECT_EQ(store.Commit(), ENOTDIR);
  EXPECT_EQ(store.Commit(), ENOTDIR);
  EXPECT_EQ(log.lines, 1);
  EXPECT_EQ(store.Get(kSection, "Key"), "1");
}

TEST_F(IniStoreTest, NamesThatCannotStandInTheFileAreRefused) {
  IniStore store = Open();
  for (const char* key : {"", " a", "a\t", "a=b", ";a", "[a", "a\nb"})
    store.Save(kSection, key, "");
  store.Save("", "a", "");
  store.Save("a\n", "a", "");
  EXPECT_EQ(log.lines, 9);
  EXPECT_EQ(store.Commit(), 0);
  EXPECT_FALSE(fs::exists(path));
}

TEST_F(IniStoreTest, KilledAtAnyMomentTheFileOrItsBackupIsWhole) {
  for (int round = 0; round < 40; ++round) {
    const pid_t child = ::fork();
    if (child == 0) {
      for (int n = 0;; ++n) {
        IniStore store = Open();
        for (int key = 0; key < 40; ++key) {
          store.Save(kSection, "Key" + std::to_string(key), std::to_string(n));
        }
        store.Commit();
      }
    }
    // Not a wait for anything: the moment of the end is what varies.
    std::this_thread::sleep_for(std::chrono::microseconds(3000 + round * 137));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ASSERT_TRUE(round == 0 || fs::exists(path));
    for (const char* name : {"s.ini", "s.ini.bak"}) {
      if (!fs::exists(folder / name)) continue;
      const auto whole = IniText::Parse(folder.Read(name));
      ASSERT_TRUE(whole) << name;
      ASSERT_TRUE(whole->Get(kSection, "Key39")) << name;
      ASSERT_EQ(whole->Get(kSection, "Key0"), whole->Get(kSection, "Key39")) << name;
    }
  }
  EXPECT_TRUE(fs::exists(path) && fs::exists(folder / "s.ini.bak"));
}

TEST(MemoryStore, KeepsTextsUntilDeleted) {
  MemoryStore store;
  store.Save("A", "k", "1");
  store.Save("A", "k", "2");
  store.Save("B", "k", "3");
  EXPECT_EQ(store.Commit(), 0);
  EXPECT_EQ(store.Get("A", "k"), "2");
  EXPECT_EQ(store.Get("B", "k"), "3");
  store.DeleteAll();
  EXPECT_EQ(store.Get("A", "k"), std::nullopt);
}

}  // namespace
}  // namespace velt

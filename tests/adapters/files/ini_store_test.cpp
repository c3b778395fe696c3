#include "adapters/files/ini_store.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <set>

#include "adapters/files/disk_files.h"
#include "adapters/files/full_disk.h"
#include "adapters/files/killed_child.h"
#include "support/temp_folder.h"

namespace velt {
namespace {

namespace fs = std::filesystem;
using std::string;

constexpr const char* kGood = "[S]\nKey=good\n";
constexpr const char* kDamaged = "[S]\nKey=ba";
const string kEnd = "; end of the settings\n";

struct CountingLog : Log {
  void Write(LogLevel, const char*, std::string_view) override { ++lines; }
  int lines = 0;
};

// A disk on which single operations fail.
struct FailingFiles : DiskFiles {
  FileContent Read(const fs::path& path) const override {
    return readError != 0 && path != readable ? FileContent{readError, ""} : DiskFiles::Read(path);
  }
  int KeepAs(const fs::path& file, const fs::path& name) override {
    return keepError != 0 ? keepError : DiskFiles::KeepAs(file, name);
  }
  int Restore(const fs::path& file, const fs::path& backup) override {
    return restoreError != 0 ? restoreError : DiskFiles::Restore(file, backup);
  }
  fs::path readable;
  int readError = 0, keepError = 0, restoreError = 0;
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
  int Reset() { return Open().DeleteAll(); }
  // New files: those of the run before may be one file with two names.
  void Prepare(const string& bytes, const string& backup) {
    for (const auto& [file, text] : {std::pair{path, bytes}, {path.string() + ".bak", backup}}) {
      fs::remove(file);
      std::ofstream(file, std::ios::binary) << text;
    }
  }
};

TEST_F(IniStoreTest, EveryTextComesBackAndPlainOnesStayPlain) {
  for (const char* plain :
       {"-2147483633", "", "a=b;c", "C:\\x\\n \"q\"", "\xC3\xA9\xFF", "[x]", ";", "in\tside"}) {
    ASSERT_EQ(SaveKey(plain), 0);
    EXPECT_EQ(folder.Read("s.ini"), string("[S]\nKey=") + plain + "\n" + kEnd);
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
      "; mine\r\n  # too\r\n[Other]\r\n#Key=0\r\nKey = 1\r\n\r\n[S]\r\n Key=\"old\"\r\n"
      "Unknown=\"a\\q\"\r\n";
  folder.Write("s.ini", "\xEF\xBB\xBF" + before + "\r\n[Last]\r\n; end of the settings\r\n");
  IniStore store = Open();
  EXPECT_EQ(store.Get("Other", "Key"), "1");
  store.Save("S", "Key", "old");
  store.Save("S", "New", "2");
  store.Save("S", "#Key", "no key");
  store.Save("More", "Key", "3");
  // What reached the file while the program ran stays too.
  std::ofstream(path, std::ios::app) << "Late=4\r\n";
  ASSERT_EQ(store.Commit(), 0);
  const string after = before + "New=2\r\n\r\n[Last]\r\nLate=4\r\n\r\n[More]\r\nKey=3\r\n" +
                       "; end of the settings\r\n";
  EXPECT_EQ(folder.Read("s.ini"), after);
  // A reset keeps what was there once, and where there is nothing it keeps what it kept.
  ASSERT_EQ(SaveKey("5"), 0);
  const string last = folder.Read("s.ini");
  folder.Write("s.ini.before-reset", "of an earlier one");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(store.DeleteAll(), 0);
    EXPECT_EQ(store.Get("Other", "Key"), std::nullopt);
    EXPECT_EQ(store.Commit(), 0);
    EXPECT_EQ(folder.Entries(), 1);
    EXPECT_EQ(folder.Read("s.ini.before-reset"), last);
  }
}

TEST_F(IniStoreTest, ADamagedFileIsKeptAndTheBackupTakesItsPlace) {
  // Not so without damage: a file or a section that is missing means the defaults, and where the
  // backup has no closing line the file needs none.
  folder.Write("s.ini.bak", kGood);
  EXPECT_EQ(Key(), std::nullopt);
  folder.Write("s.ini", "[Other]\n");
  EXPECT_EQ(Key(), std::nullopt);
  // Some editors leave the last line without its end, and somebody may add lines behind it.
  for (const string& whole :
       {"[S]\nKey=mine\n" + kEnd.substr(0, kEnd.size() - 1), "[S]\n" + kEnd + "Key=mine\n"}) {
    Prepare(whole, kGood + kEnd);
    EXPECT_EQ(Key(), "mine");
  }
  EXPECT_EQ(log.lines, 0);
  int round = 0;
  for (const string& damaged :
       {string(), string(kDamaged), string("[S]\nKey=b\0d\n", 12), string("[S\nKey=bad\n"),
        string("[S]\nKey\n"), string("[S]\n=bad\n"), string("Key=bad\n"), string("[S]\nKey=bad\n"),
        "[S]\nKey=bad\n" + kEnd.substr(0, 9)}) {
    Prepare(damaged, kGood + kEnd);
    EXPECT_EQ(Key(), "good") << damaged;
    const string number = ++round == 1 ? "" : "." + std::to_string(round);
    EXPECT_EQ(folder.Read("s.ini.damaged" + number), damaged);
    EXPECT_GE(log.lines, round);
    EXPECT_EQ(folder.Read("s.ini"), kGood + kEnd);
  }
  Prepare("", "rubbish");
  EXPECT_EQ(Key(), std::nullopt);
  EXPECT_EQ(folder.Read("s.ini.bak.damaged"), "rubbish");
  ASSERT_EQ(SaveKey("new"), 0);
  EXPECT_EQ(Key(), "new");
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

// Whatever fails on the way, in runs that save as every normal end does, the good settings are the
// file's, the backup's or both, and come back once nothing fails any more.
TEST_F(IniStoreTest, OfADamagedFileAndItsGoodBackupNothingIsLostWhateverFails) {
  fs::create_directory(folder / "disk");
  FullDisk disk(folder / "disk");
  path = folder / "disk/s.ini";
  struct Case {
    const char* name;
    int backupError, keepError, restoreError;
    bool full;
  };
  for (const Case& c :
       {Case{"full disk", 0, 0, 0, true}, Case{"backup unreadable", EIO, 0, 0, false},
        Case{"nothing can be kept", 0, ENOSPC, 0, false},
        Case{"nothing can be restored", 0, 0, EIO, false}}) {
    Prepare(kDamaged, kGood + kEnd);
    if (c.full) disk.Fill();
    for (int run = 0; run < 3; ++run) {
      files.readError = c.backupError;
      files.readable = path;
      files.keepError = c.keepError;
      files.restoreError = c.restoreError;
      IniStore store = Open();
      const auto key = store.Get("S", "Key");
      EXPECT_EQ(key.value_or("(none)"), c.backupError == 0 ? "good" : "(none)") << c.name;
      store.Save("S", "Key", key.value_or("default"));
      const int error = store.Commit();
      EXPECT_EQ(error == 0, c.restoreError != 0) << c.name << " " << error;
      EXPECT_EQ(folder.Read("disk/s.ini.bak"), kGood + kEnd) << c.name;
    }
    disk.Free();
    files.readError = files.keepError = files.restoreError = 0;
    EXPECT_EQ(Key(), "good") << c.name;
    EXPECT_EQ(folder.Read("disk/s.ini.damaged"), kDamaged) << c.name;
    EXPECT_FALSE(fs::exists(folder / "disk/s.ini.damaged.2")) << c.name;
    fs::remove(folder / "disk/s.ini.damaged");
  }
}

TEST_F(IniStoreTest, KilledBeforeAnyChangeNothingIsLost) {
  fs::create_directory(folder / "disk");
  FullDisk disk(folder / "disk");
  path = folder / "disk/s.ini";
  const auto saves = [this] { SaveKey("new"); };
  struct Case {
    const char* name;
    std::function<void()> work;
    string file;
    bool full;
    std::set<string> next;  // what the next start may have
  };
  for (const Case& c :
       {Case{"saving", saves, "[S]\nKey=old\n" + kEnd, false, {"old", "new"}},
        Case{"saving over a damaged file", saves, kDamaged, false, {"good", "new"}},
        Case{"the same on a full disk", saves, "[S]\nKey=bad\n", true, {"good", "new"}},
        Case{"reset", [this] { Reset(); }, "[S]\nKey=old\n" + kEnd, false, {"old", "(none)"}},
        Case{"reset of a damaged file", [this] { Reset(); }, "", true, {"good", "(none)"}}}) {
    int change = 0;
    for (bool killed = true; killed; ++change) {
      Prepare(c.file, kGood + kEnd);
      fs::remove(folder / "disk/s.ini.before-reset");
      if (c.full) disk.Fill();
      killed = KilledBeforeChange(change, c.work);
      disk.Free();
      const string where = c.name + string(" before change ") + std::to_string(change);
      const string next = Key().value_or("(none)");
      ASSERT_TRUE(c.next.contains(next)) << where << ": " << next;
      // Good settings other than those in use are still in the backup, or kept by the reset.
      const auto kept = IniText::Parse(folder.Read("disk/s.ini.before-reset"));
      const auto backup = IniText::Parse(folder.Read("disk/s.ini.bak"));
      ASSERT_TRUE(backup || next == "(none)") << where;
      const auto keptKey = kept ? kept->Get("S", "Key") : std::nullopt;
      ASSERT_TRUE(next != "(none)" || keptKey == *c.next.rbegin()) << where;
      for (const auto& entry : fs::directory_iterator(folder / "disk")) {
        ASSERT_NE(entry.path().extension(), ".tmp") << where;
      }
    }
    EXPECT_GT(change, 5) << c.name;
  }
  EXPECT_FALSE(fs::exists(folder / "disk/s.ini.damaged.4"));
}

}  // namespace
}  // namespace velt

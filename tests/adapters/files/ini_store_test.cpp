#include "adapters/files/ini_store.h"

#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <functional>
#include <set>
#include <stdexcept>

#include "adapters/files/disk_files.h"
#include "adapters/files/full_disk.h"
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

// A disk on which one operation fails: reading files with that extension, or the one of that name.
struct FailingFiles : DiskFiles {
  FileContent Read(const fs::path& path) const override {
    return path.extension() == failing ? FileContent{EIO, ""} : DiskFiles::Read(path);
  }
  int KeepAs(const fs::path& file, const fs::path& name) override {
    return failing == "keep" ? EIO : DiskFiles::KeepAs(file, name);
  }
  int Restore(const fs::path& file, const fs::path& backup) override {
    return failing == "restore" ? EIO : DiskFiles::Restore(file, backup);
  }
  string failing = "nothing";
};

struct IniStoreTest : testing::Test {
  TempFolder folder{"/dev/shm"};  // where flushing takes no time
  FailingFiles files;
  CountingLog log;
  fs::path path = folder / "s.ini";

  IniStore Open() { return {path, files, log}; }
  string Key() { return Open().Get("S", "Key").value_or("(none)"); }
  int SaveKey(const string& text) {
    IniStore store = Open();
    store.Save("S", "Key", text);
    return store.Commit();
  }
  // New files: those of the run before may be one file with two names.
  void Prepare(const string& bytes, const string& backup = kGood + kEnd) {
    for (const auto& entry : fs::directory_iterator(folder.Path())) fs::remove(entry);
    folder.Write("s.ini", bytes);
    folder.Write("s.ini.bak", backup);
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
  EXPECT_EQ(Key(), "(none)");
  folder.Write("s.ini", "[Other]\n");
  EXPECT_EQ(Key(), "(none)");
  // Some editors leave the last line without its end, and somebody may add lines behind it.
  for (const string& whole :
       {"[S]\nKey=mine\n" + kEnd.substr(0, kEnd.size() - 1), "[S]\n" + kEnd + "Key=mine\n"}) {
    Prepare(whole);
    EXPECT_EQ(Key(), "mine");
  }
  EXPECT_EQ(log.lines, 0);
  for (const string& damaged :
       {string(), string(kDamaged), string("[S]\nKey=b\0d\n", 12), string("[S\nKey=bad\n"),
        string("[S]\nKey\n"), string("[S]\n=bad\n"), string("Key=bad\n"), string("[S]\nKey=bad\n"),
        "[S]\nKey=bad\n" + kEnd.substr(0, 9)}) {
    Prepare(damaged);
    folder.Write("s.ini.damaged", "an earlier one");
    log.lines = 0;
    EXPECT_EQ(Key(), "good") << damaged;
    EXPECT_EQ(folder.Read("s.ini.damaged.2"), damaged);
    EXPECT_EQ(folder.Read("s.ini.damaged"), "an earlier one");
    EXPECT_EQ(folder.Read("s.ini"), kGood + kEnd);
    EXPECT_GE(log.lines, 1);
  }
  Prepare("", "rubbish");
  EXPECT_EQ(Key(), "(none)");
  EXPECT_EQ(folder.Read("s.ini.bak.damaged"), "rubbish");
  ASSERT_EQ(SaveKey("new"), 0);
  EXPECT_EQ(Key(), "new");
}

TEST_F(IniStoreTest, WhatCannotBeReadOrWrittenIsLeftAloneAndToldOnce) {
  folder.Write("s.ini", kGood);
  for (const int error : {EIO, ENOTDIR}) {
    if (error == ENOTDIR) path = folder / "s.ini/below";
    files.failing = error == EIO ? ".ini" : "nothing";
    log.lines = 0;
    IniStore store = Open();
    files.failing = "nothing";
    EXPECT_EQ(store.Get("S", "Key"), std::nullopt);
    store.Save("S", "Key", "2");
    for (int i = 0; i < 2; ++i) EXPECT_EQ(store.Commit(), error);
    EXPECT_EQ(store.Get("S", "Key"), "2");
    EXPECT_EQ(log.lines, 1);
    EXPECT_EQ(folder.Read("s.ini"), kGood);
  }
}

// Whatever fails on the way, in runs that save as every normal end does, the good settings are the
// file's, the backup's or both, and come back once nothing fails any more.
TEST_F(IniStoreTest, OfADamagedFileAndItsGoodBackupNothingIsLostWhateverFails) {
  const FullDisk disk;
  for (const string failing : {"growing", ".bak", "keep", "restore"}) {
    Prepare(kDamaged);
    if (failing == "growing") disk.Fill();
    files.failing = failing;
    for (int run = 0; run < 3; ++run) {
      IniStore store = Open();
      const auto key = store.Get("S", "Key");
      EXPECT_EQ(key.value_or("(none)"), failing == ".bak" ? "(none)" : "good") << failing;
      store.Save("S", "Key", key.value_or("default"));
      EXPECT_EQ(store.Commit() == 0, failing == "restore") << failing;
      EXPECT_EQ(folder.Read("s.ini.bak"), kGood + kEnd) << failing;
    }
    disk.Free();
    files.failing = "nothing";
    EXPECT_EQ(Key(), "good") << failing;
    EXPECT_EQ(folder.Read("s.ini.damaged"), kDamaged) << failing;
    EXPECT_FALSE(files.IsFile(folder / "s.ini.damaged.2")) << failing;
  }
}

// Runs the work in a child process and kills it before or after one of its system calls, the
// number counting these stops from 0. False when it came to its end before.
bool KilledAtStop(int number, const std::function<void()>& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    ::raise(SIGSTOP);
    work();
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_EXITKILL);
  for (int stop = 0; stop <= number && !WIFEXITED(status); ++stop) {
    if (::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0) {
      throw std::runtime_error("the child process cannot be followed");
    }
    ::waitpid(child, &status, 0);
  }
  if (WIFEXITED(status)) return false;
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  return true;
}

TEST_F(IniStoreTest, KilledAtAnyMomentNothingIsLost) {
  const FullDisk disk;
  const auto save = [this] { SaveKey("new"); };
  const auto reset = [this] { Open().DeleteAll(); };
  struct Case {
    std::function<void()> work;
    string file;
    bool full;
    std::set<string> next;  // what the next start may have
  };
  for (const Case& c : {Case{save, "[S]\nKey=old\n" + kEnd, false, {"old", "new"}},
                        Case{save, kDamaged, false, {"good", "new"}},
                        Case{save, "[S]\nKey=bad\n", true, {"good", "new"}},
                        Case{reset, "[S]\nKey=old\n" + kEnd, false, {"old", "(none)"}},
                        Case{reset, "", true, {"good", "(none)"}}}) {
    int stop = 0;
    for (bool killed = true; killed; ++stop) {
      SCOPED_TRACE(*c.next.rbegin() + " instead of " + c.file + " at stop " + std::to_string(stop));
      Prepare(c.file);
      if (c.full) disk.Fill();
      killed = KilledAtStop(stop, c.work);
      disk.Free();
      const string next = Key();
      ASSERT_TRUE(c.next.contains(next)) << next;
      // Good settings other than those in use are still in the backup, or kept by the reset.
      const char* other = next == "(none)" ? "s.ini.before-reset" : "s.ini.bak";
      const auto kept = IniText::Parse(folder.Read(other));
      ASSERT_TRUE(kept && (next != "(none)" || kept->Get("S", "Key") == *c.next.rbegin()));
      ASSERT_FALSE(files.IsFile(folder / "s.ini.damaged.2"));
      for (const auto& entry : fs::directory_iterator(folder.Path())) {
        ASSERT_NE(entry.path().extension(), ".tmp");
      }
    }
    EXPECT_GT(stop, 5);
  }
}

}  // namespace
}  // namespace velt

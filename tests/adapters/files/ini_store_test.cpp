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
using namespace std::string_literals;

const string kGood = "[S]\nKey=good\n", kDamaged = "[S]\nKey=ba";
const string kEnd = "; end of the settings\n";

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

struct IniStoreTest : testing::Test, Log {
  void Write(LogLevel, const char*, std::string_view) override { ++lines; }
  int lines = 0;
  TempFolder folder{"/dev/shm"};  // where flushing takes no time
  FailingFiles files;
  const fs::path path = folder / "s.ini";

  IniStore Open() { return {path, files, *this}; }
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
  int number = 0;
  for (const string& text : {"-2147483633"s, "a=b;c"s, "C:\\x\\n \"q\""s, "\xC3\xA9\xFF"s, " x"s,
                             "x\t"s, "\"\\x41\""s, "a\nb\r\nc\\"s, "\0\x7f"s}) {
    ASSERT_EQ(SaveKey(text), 0);
    EXPECT_EQ(Key(), text);
    EXPECT_EQ(folder.Read("s.ini") == "[S]\nKey=" + text + "\n" + kEnd, ++number <= 4) << text;
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
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(store.DeleteAll(), 0);
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
  EXPECT_EQ(lines, 0);
  for (const string& damaged : {""s, kDamaged, "[S]\nKey=b\0d\n"s, "[S\nKey=bad\n"s, "[S]\nKey\n"s,
                                "Key=bad\n"s, "[S]\nKey=bad\n" + kEnd.substr(0, 9)}) {
    Prepare(damaged);
    folder.Write("s.ini.damaged", "an earlier one");
    lines = 0;
    EXPECT_EQ(Key(), "good") << damaged;
    EXPECT_EQ(folder.Read("s.ini.damaged.2"), damaged);
    EXPECT_EQ(folder.Read("s.ini.damaged"), "an earlier one");
    EXPECT_EQ(folder.Read("s.ini"), kGood + kEnd);
    EXPECT_GE(lines, 1);
  }
  Prepare("", "rubbish");
  EXPECT_EQ(Key(), "(none)");
  EXPECT_EQ(folder.Read("s.ini.bak.damaged"), "rubbish");
}

TEST_F(IniStoreTest, WhatCannotBeReadIsLeftAloneAndToldOnce) {
  folder.Write("s.ini", kGood);
  files.failing = ".ini";
  IniStore store = Open();
  files.failing = "nothing";
  store.Save("S", "Key", "2");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(store.Commit(), EIO);
  EXPECT_EQ(store.Get("S", "Key"), "2");
  EXPECT_EQ(lines, 1);
  EXPECT_EQ(folder.Read("s.ini"), kGood);
}

// Whatever fails on the way, in runs that save as every normal end does, the good settings are the
// file's, the backup's or both, and come back once nothing fails any more.
TEST_F(IniStoreTest, OfADamagedFileAndItsGoodBackupNothingIsLostWhateverFails) {
  for (const string failing : {".bak", "keep", "restore"}) {
    Prepare(kDamaged);
    files.failing = failing;
    for (int run = 0; run < 3; ++run) {
      IniStore store = Open();
      const auto key = store.Get("S", "Key");
      EXPECT_EQ(key.value_or("(none)"), failing == ".bak" ? "(none)" : "good") << failing;
      store.Save("S", "Key", key.value_or("default"));
      EXPECT_EQ(store.Commit() == 0, failing == "restore") << failing;
      EXPECT_EQ(folder.Read("s.ini.bak"), kGood + kEnd) << failing;
    }
    files.failing = "nothing";
    EXPECT_EQ(Key(), "good") << failing;
    EXPECT_EQ(folder.Read("s.ini.damaged"), kDamaged) << failing;
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
  for (int stop = 0; stop <= number && !WIFEXITED(status); ++stop) {
    if (::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0) throw std::runtime_error("ptrace");
    ::waitpid(child, &status, 0);
  }
  if (WIFEXITED(status)) return false;
  ::kill(child, SIGKILL);
  return ::waitpid(child, nullptr, 0) == child;
}

TEST_F(IniStoreTest, KilledAtAnyMomentNothingIsLost) {
  const FullDisk disk;
  const auto save = [this] { SaveKey("new"); };
  const auto reset = [this] { Open().DeleteAll(); };
  using Case = std::tuple<std::function<void()>, string, bool, std::set<string>>;
  for (const auto& [work, file, full, expected] :  // what the next start may have
       {Case{save, "[S]\nKey=old\n" + kEnd, false, {"old", "new"}},
        Case{save, kDamaged, false, {"good", "new"}},
        Case{save, "[S]\nKey=bad\n", true, {"good", "new"}},
        Case{reset, "[S]\nKey=old\n" + kEnd, false, {"old", "(none)"}},
        Case{reset, "", true, {"good", "(none)"}}}) {
    int stop = 0;
    for (bool killed = true; killed; ++stop) {
      SCOPED_TRACE(*expected.rbegin() + " instead of " + file + " at stop " + std::to_string(stop));
      Prepare(file);
      if (full) disk.Fill();
      killed = KilledAtStop(stop, work);
      disk.Free();
      const string next = Key();
      ASSERT_TRUE(expected.contains(next)) << next;
      // Good settings other than those in use are still in the backup, or kept by the reset.
      const char* other = next == "(none)" ? "s.ini.before-reset" : "s.ini.bak";
      const auto kept = IniText::Parse(folder.Read(other));
      ASSERT_TRUE(kept && (next != "(none)" || kept->Get("S", "Key") == *expected.rbegin()));
    }
    EXPECT_GT(stop, 5);
  }
}

}  // namespace
}  // namespace velt

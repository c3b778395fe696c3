#include "adapters/files/disk_files.h"

#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>

#include "support/temp_folder.h"

namespace velt {
namespace {

namespace fs = std::filesystem;

// Runs a check in a process of its own, where it may take rights away from itself.
template <class Check>
int ResultInChild(Check check) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(check());
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(DiskFiles, ReplaceKeepsBackupRightsAndLinks) {
  const TempFolder folder;
  DiskFiles files;
  fs::create_directory(folder / "elsewhere");
  folder.Write("elsewhere/real", "one");
  ::chmod((folder / "elsewhere/real").c_str(), 0640);
  fs::create_symlink("elsewhere/real", folder / "file");

  ASSERT_EQ(files.Replace(folder / "file", "two", false), 0);
  EXPECT_FALSE(files.IsFile(folder / "file.bak"));
  for (const char* text : {"three", "four"})
    ASSERT_EQ(files.Replace(folder / "file", text, true), 0);

  EXPECT_EQ(fs::read_symlink(folder / "file"), "elsewhere/real");
  EXPECT_EQ(folder.Read("elsewhere/real"), "four");
  EXPECT_EQ(folder.Read("file.bak"), "three");
  struct stat status {};
  ASSERT_EQ(::stat((folder / "elsewhere/real").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);

  // Without a previous file the backup stays.
  ASSERT_EQ(files.Remove(folder / "elsewhere/real"), 0);
  ASSERT_EQ(files.Replace(folder / "file", "five", true), 0);
  EXPECT_EQ(folder.Read("elsewhere/real"), "five");
  EXPECT_EQ(folder.Read("file.bak"), "three");

  // As an end between the two renames leaves it: both names are one file.
  fs::remove(folder / "file.bak");
  fs::create_hard_link(folder / "elsewhere/real", folder / "file.bak");
  ASSERT_EQ(files.Replace(folder / "file", "six", true), 0);
  EXPECT_EQ(folder.Read("file.bak"), "five");
  EXPECT_EQ(folder.Entries(), 3U);  // elsewhere, file, file.bak
}

TEST(DiskFiles, AFailedReplacementLeavesEverythingAsItWas) {
  const TempFolder folder;
  DiskFiles files;
  folder.Write("file", "old");
  folder.Write("file.bak", "older");
  fs::create_directories(folder / "taken");
  folder.Write("blocked", "old");
  fs::create_directories(folder / "blocked.bak/full");
  fs::create_symlink("loop", folder / "loop");
  ::mkfifo((folder / "pipe").c_str(), 0600);
  const size_t entries = folder.Entries();

  struct Case {
    const char* name;
    int error;
  };
  for (const Case& c :
       {Case{"taken", EISDIR}, Case{"file/below", ENOTDIR}, Case{"missing/file", ENOENT},
        Case{"blocked", EISDIR}, Case{"loop", ELOOP}, Case{"pipe", EINVAL}}) {
    EXPECT_EQ(files.Replace(folder / c.name, "new", true), c.error) << c.name;
  }
  // A disk that fills up in the middle of the writing.
  const int full = ResultInChild([&] {
    const rlimit limit{4096, 4096};
    ::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &limit);
    return files.Replace(folder / "file", std::string(100000, 'x'), true);
  });
  EXPECT_EQ(full, EFBIG);
  EXPECT_EQ(folder.Read("file"), "old");
  EXPECT_EQ(folder.Read("file.bak"), "older");
  EXPECT_EQ(folder.Read("blocked"), "old");
  EXPECT_EQ(folder.Entries(), entries);
}

TEST(DiskFiles, TheBackupIsCopiedWhereFilesHaveOneNameOnly) {
  if (!fs::is_directory("/dev/shm")) GTEST_SKIP() << "no second disk to try it on";
  const TempFolder folder;
  const fs::path other = fs::path("/dev/shm") / folder.Path().filename();
  folder.Write("disk", "");
  fs::create_directory(other);
  std::ofstream(other / "real") << "old";
  fs::create_symlink(other / "real", folder / "file");
  DiskFiles files;
  EXPECT_EQ(files.Replace(folder / "file", "new", true), 0);
  EXPECT_EQ(folder.Read("file"), "new");
  EXPECT_EQ(folder.Read("file.bak"), "old");
  EXPECT_EQ(folder.Entries(), 3U);
  fs::remove_all(other);
}

TEST(DiskFiles, RenameNeverReplaces) {
  // The same rules where the disk does not know the renaming that refuses by itself, shown by a
  // filter that lets the system call fail.
  const auto withoutRenameat2 = [] {
    std::array<sock_filter, 4> rules = {
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 1),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
    const sock_fprog program{static_cast<unsigned short>(rules.size()), rules.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
  };
  for (const bool filtered : {false, true}) {
    const TempFolder folder;
    folder.Write("one", "1");
    folder.Write("two", "2");
    fs::create_directory(folder / "sub");
    DiskFiles files;
    const int failed = ResultInChild([&] {
      if (filtered && !withoutRenameat2()) return 100;
      struct Case {
        const char* from;
        const char* to;
        int error;
      };
      int number = 0;
      for (const Case& c : {Case{"one", "two", EEXIST}, Case{"one", "sub", EEXIST},
                            Case{"none", "three", ENOENT}, Case{"one", "nowhere/three", ENOENT},
                            Case{"one", "three", 0}, Case{"sub", "moved", 0}}) {
        ++number;
        if (files.Rename(folder / c.from, folder / c.to) != c.error) return number;
      }
      return 0;
    });
    EXPECT_EQ(failed, 0) << "case of that number, filtered: " << filtered;
    EXPECT_EQ(folder.Read("two"), "2");
    EXPECT_EQ(folder.Read("three"), "1");
    EXPECT_FALSE(files.IsFile(folder / "one"));
    EXPECT_TRUE(files.IsFolder(folder / "moved"));
  }
}

TEST(DiskFiles, ReadingAndFolders) {
  const TempFolder folder;
  DiskFiles files;
  const std::string bytes = std::string(70000, '\0') + "end\r\n";
  folder.Write("file", bytes);
  ::mkfifo((folder / "pipe").c_str(), 0600);
  EXPECT_EQ(files.Read(folder / "file").bytes, bytes);
  EXPECT_EQ(files.Read(folder / "none").error, ENOENT);
  EXPECT_EQ(files.Read(folder.Path()).error, EISDIR);
  EXPECT_EQ(files.Read(folder / "pipe").error, EINVAL);
  EXPECT_FALSE(files.IsFile(folder.Path()));
  EXPECT_FALSE(files.IsFile(""));
  EXPECT_FALSE(files.IsFolder(folder / "file"));
  EXPECT_EQ(files.MakeFolder(folder / "a/b/c"), 0);
  EXPECT_EQ(files.MakeFolder(folder / "a/b/c"), 0);
  EXPECT_TRUE(files.IsFolder(folder / "a/b/c"));
  EXPECT_EQ(files.MakeFolder(folder / "file/sub"), ENOTDIR);
  EXPECT_EQ(files.Remove(folder / "none"), ENOENT);
}

}  // namespace
}  // namespace velt

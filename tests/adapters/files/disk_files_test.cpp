#include "adapters/files/disk_files.h"

#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>

#include "support/temp_folder.h"

namespace velt {
namespace {

namespace fs = std::filesystem;

// Runs a check in a process of its own, where it may take abilities away from itself.
template <class Check>
int ResultInChild(Check check) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(check());
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(DiskFiles, ReplaceKeepsBackupRightsAndLinks) {
  const ScratchFolder folder;
  const ScratchFolder sub;
  DiskFiles files;
  // The second time over the border of a disk, where the backup cannot be another name.
  for (const fs::path& real :
       {sub / "real", fs::path("/dev/shm") / (sub / "").parent_path().filename()}) {
    std::ofstream(real) << "one";
    ::chmod(real.c_str(), 0640);
    fs::create_symlink(real, folder / "file");
    ASSERT_EQ(files.Replace(folder / "file", "two", false), 0);
    EXPECT_FALSE(files.IsFile(folder / "file.bak"));
    ASSERT_EQ(files.Replace(folder / "file", "three", true), 0);
    ASSERT_EQ(files.Replace(folder / "file", "four", true), 0);
    EXPECT_EQ(fs::read_symlink(folder / "file"), real);
    EXPECT_EQ(files.Read(real).bytes + folder.Read("file.bak"), "fourthree");
    EXPECT_EQ(fs::status(real).permissions(), fs::perms(0640));
    // Without a previous file the backup stays.
    ASSERT_EQ(files.Remove(real), 0);
    ASSERT_EQ(files.Replace(folder / "file", "five", true), 0);
    EXPECT_EQ(files.Read(real).bytes + folder.Read("file.bak"), "fivethree");
    EXPECT_EQ(folder.Entries(), 2);
    fs::remove(folder / "file");
    fs::remove(folder / "file.bak");
    fs::remove(real);
  }
  // As an end between the two renames leaves it: both names are one file.
  folder.Write("file", "five");
  fs::create_hard_link(folder / "file", folder / "file.bak");
  ASSERT_EQ(files.Replace(folder / "file", "six", true), 0);
  EXPECT_EQ(folder.Read("file") + folder.Read("file.bak"), "sixfive");
  EXPECT_EQ(folder.Entries(), 2);
}

TEST(DiskFiles, AFailedOperationLeavesEverythingAsItWas) {
  const ScratchFolder folder;
  DiskFiles files;
  for (const char* name : {"file", "file.bak", "blocked"}) folder.Write(name, "old");
  fs::create_directories(folder / "blocked.bak/full");
  fs::create_symlink("loop", folder / "loop");
  ::mkfifo((folder / "pipe").c_str(), 0600);
  const auto entries = folder.Entries();
  struct Case {
    const char* name;
    int replaceError, readError;
  };
  for (const Case& c : {Case{"blocked.bak", EISDIR, EISDIR}, Case{"file/below", ENOTDIR, ENOTDIR},
                        Case{"missing/file", ENOENT, ENOENT}, Case{"blocked", EISDIR, 0},
                        Case{"loop", ELOOP, ELOOP}, Case{"pipe", EINVAL, EINVAL}}) {
    EXPECT_EQ(files.Replace(folder / c.name, "new", true), c.replaceError) << c.name;
    EXPECT_EQ(files.Read(folder / c.name).error, c.readError) << c.name;
  }
  // A disk that fills up in the middle of the writing.
  const int full = ResultInChild([&] {
    const rlimit limit{4096, 4096};
    ::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &limit);
    return files.Replace(folder / "file", std::string(100000, 'x'), true);
  });
  EXPECT_EQ(full, EFBIG);
  EXPECT_EQ(files.MakeFolder(folder / "file/sub"), ENOTDIR);
  for (const char* name : {"file", "file.bak", "blocked"}) EXPECT_EQ(folder.Read(name), "old");
  EXPECT_EQ(folder.Entries(), entries);
  EXPECT_FALSE(files.IsFile(folder / "blocked.bak"));
  EXPECT_FALSE(files.IsFile(""));
}

// Lets the renaming that refuses by itself fail, as it does on disks that do not know it.
bool TakeAwayRenameat2() {
  sock_filter rules[] = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                         BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 1),
                         BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
                         BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
  const sock_fprog program{4, rules};
  return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

TEST(DiskFiles, RenameNeverReplaces) {
  for (const bool known : {true, false}) {
    const ScratchFolder folder;
    DiskFiles files;
    for (const char* name : {"one", "two"}) folder.Write(name, name);
    ASSERT_EQ(files.MakeFolder(folder / "sub/deep"), 0);
    const int failed = ResultInChild([&] {
      if (!known && !TakeAwayRenameat2()) return 100;
      struct Case {
        const char *from, *to;
        int error;
      };
      int number = 0;
      for (const Case& c :
           {Case{"one", "two", EEXIST}, Case{"one", "sub", EEXIST}, Case{"none", "three", ENOENT},
            Case{"one", "no/three", ENOENT}, Case{"one", "three", 0}, Case{"sub", "moved", 0}}) {
        ++number;
        if (files.Rename(folder / c.from, folder / c.to) != c.error) return number;
      }
      return 0;
    });
    EXPECT_EQ(failed, 0) << "case of that number, renaming known: " << known;
    EXPECT_EQ(folder.Read("two") + folder.Read("three"), "twoone");
    EXPECT_TRUE(files.IsFolder(folder / "moved/deep"));
    EXPECT_EQ(folder.Entries(), 3);
  }
}

}  // namespace
}  // namespace velt

#include "adapters/files/disk_files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>

#include "support/temp_folder.h"

namespace velt {
namespace {

namespace fs = std::filesystem;

TEST(DiskFiles, ReplaceKeepsBackupRightsAndLinks) {
  const TempFolder folder, sub;
  DiskFiles files;
  // The second time over the border of a disk, where the backup cannot be another name.
  for (const fs::path& real : {sub / "real", "/dev/shm" / sub.Path().filename()}) {
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
    EXPECT_EQ(folder.Entries(), 2);
    for (const fs::path& path : {folder / "file", folder / "file.bak", real}) fs::remove(path);
  }
  // As an end between the two renames leaves it: both names are one file.
  folder.Write("file", "five");
  fs::create_hard_link(folder / "file", folder / "file.bak");
  ASSERT_EQ(files.Replace(folder / "file", "six", true), 0);
  EXPECT_EQ(folder.Read("file") + folder.Read("file.bak"), "sixfive");
  EXPECT_EQ(folder.Entries(), 2);
}

TEST(DiskFiles, AFailedOperationLeavesEverythingAsItWas) {
  const TempFolder folder;
  DiskFiles files;
  for (const char* name : {"file", "file.bak", "blocked"}) folder.Write(name, "old");
  fs::create_directories(folder / "blocked.bak/full");
  ::mkfifo((folder / "pipe").c_str(), 0600);
  struct Case {
    const char* name;
    int replaceError, readError;
  };
  for (const Case& c : {Case{"blocked.bak", EISDIR, EISDIR}, Case{"missing/file", ENOENT, ENOENT},
                        Case{"blocked", EISDIR, 0}, Case{"pipe", EINVAL, EINVAL}}) {
    EXPECT_EQ(files.Replace(folder / c.name, "new", true), c.replaceError) << c.name;
    EXPECT_EQ(files.Read(folder / c.name).error, c.readError) << c.name;
  }
  // A disk that fills up in the middle of the writing.
  ::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const rlimit little{4096, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &little);
  EXPECT_EQ(files.Replace(folder / "file", std::string(100000, 'x'), true), EFBIG);
  ::setrlimit(RLIMIT_FSIZE, &before);
  for (const char* name : {"file", "file.bak", "blocked"}) EXPECT_EQ(folder.Read(name), "old");
  EXPECT_EQ(folder.Entries(), 5);
}

TEST(DiskFiles, RenameNeverReplaces) {
  const TempFolder folder;
  DiskFiles files;
  for (const char* name : {"one", "two"}) folder.Write(name, name);
  ASSERT_EQ(files.MakeFolder(folder / "sub"), 0);
  EXPECT_EQ(files.Rename(folder / "one", folder / "two"), EEXIST);
  EXPECT_EQ(files.Rename(folder / "one", folder / "sub"), EEXIST);
  EXPECT_EQ(files.Rename(folder / "none", folder / "three"), ENOENT);
  EXPECT_EQ(files.Rename(folder / "one", folder / "three"), 0);
  EXPECT_EQ(folder.Read("two") + folder.Read("three"), "twoone");
}

}  // namespace
}  // namespace velt

#include "adapters/files/disk_files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>

#include "adapters/files/full_disk.h"
#include "adapters/files/whole_file.h"
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
    ASSERT_EQ(files.KeepAs(folder / "file", folder / "kept"), 0);
    EXPECT_EQ(files.KeepAs(folder / "file.bak", folder / "kept"), EEXIST);
    ASSERT_EQ(files.Restore(folder / "file", folder / "file.bak"), 0);
    EXPECT_EQ(fs::read_symlink(folder / "file"), real);
    EXPECT_EQ(files.Read(real).bytes + folder.Read("kept"), "threefour");
    for (const fs::path& path : {real, folder / "file.bak", folder / "kept"}) {
      EXPECT_EQ(fs::symlink_status(path).permissions(), fs::perms(0640)) << path;
    }
    EXPECT_EQ(folder.Entries(), 3);
    for (const char* name : {"file", "file.bak", "kept"}) fs::remove(folder / name);
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
  const TempFolder folder;
  DiskFiles files;
  for (const char* name : {"file", "file.bak", "blocked"}) folder.Write(name, "old");
  fs::create_directories(folder / "blocked.bak/full");
  ::mkfifo((folder / "pipe").c_str(), 0600);
  fs::create_symlink("circle", folder / "circle");
  struct Case {
    const char* name;
    int replaceError, readError;
  };
  for (const Case& c :
       {Case{"blocked.bak", EISDIR, EISDIR}, Case{"missing/file", ENOENT, ENOENT},
        Case{"blocked", EISDIR, 0}, Case{"pipe", EINVAL, EINVAL}, Case{"circle", ELOOP, ELOOP}}) {
    EXPECT_EQ(files.Replace(folder / c.name, "new", true), c.replaceError) << c.name;
    EXPECT_EQ(files.Read(folder / c.name).error, c.readError) << c.name;
  }
  // A folder that the user may not write to. The administrator may, so be somebody else then.
  fs::permissions(folder.Path(), fs::perms(0555));
  const bool administrator = ::geteuid() == 0 && ::seteuid(65534) == 0;
  EXPECT_EQ(files.Replace(folder / "file", "new", true), EACCES);
  EXPECT_EQ(files.KeepAs(folder / "file", folder / "kept"), EACCES);
  EXPECT_EQ(files.Restore(folder / "file", folder / "file.bak"), EACCES);
  EXPECT_EQ(files.RenameOver(folder / "file", folder / "file.bak"), EACCES);
  ASSERT_TRUE(!administrator || ::seteuid(0) == 0);
  fs::permissions(folder.Path(), fs::perms(0755));
  for (const char* name : {"file", "file.bak", "blocked"}) EXPECT_EQ(folder.Read(name), "old");
  EXPECT_EQ(folder.Entries(), 6);
}

TEST(DiskFiles, AFullDiskCostsNothingAndABackupIsRestoredAllTheSame) {
  const TempFolder folder;
  ASSERT_EQ(fs::create_directory(folder / "disk"), true);
  FullDisk disk(folder / "disk");
  DiskFiles files;
  folder.Write("disk/file", "old");
  folder.Write("disk/file.bak", "older");
  const auto entries = [&] { return std::distance(fs::directory_iterator(folder / "disk"), {}); };
  {
    // Also when it is full only in the middle of the writing, and nobody asked after each piece.
    WholeFile file;
    ASSERT_EQ(file.Open(folder / "disk/file"), 0);
    EXPECT_EQ(file.Write("first"), 0);
    disk.Fill();
    while (file.Write(std::string(4096, 'x')) == 0) {
    }
    disk.Free();
    EXPECT_EQ(file.Write("last"), disk.Error());
    EXPECT_EQ(file.PutInPlace(true), disk.Error());
    EXPECT_EQ(folder.Read("disk/file") + folder.Read("disk/file.bak"), "oldolder");
  }
  EXPECT_EQ(entries(), 2);
  disk.Fill();
  EXPECT_EQ(files.Replace(folder / "disk/file", "new", true), disk.Error());
  EXPECT_EQ(files.KeepAs(folder / "disk/file", folder / "disk/kept"), 0);
  EXPECT_EQ(files.Restore(folder / "disk/file", folder / "disk/file.bak"), 0);
  disk.Free();
  EXPECT_EQ(folder.Read("disk/kept"), "old");
  EXPECT_EQ(folder.Read("disk/file") + folder.Read("disk/file.bak"), "olderolder");
  // The two are one file now, and the next replacement has to part them.
  ASSERT_EQ(files.Replace(folder / "disk/file", "new", true), 0);
  EXPECT_EQ(folder.Read("disk/file") + folder.Read("disk/file.bak"), "newolder");
  EXPECT_EQ(entries(), 3);
}

TEST(DiskFiles, WhatAKilledRunLeftIsRemovedAndNothingElse) {
  const TempFolder folder, sub;
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  ::waitpid(child, nullptr, 0);
  const std::string dead = std::to_string(child);
  const std::string own = std::to_string(::getpid());
  for (const std::string& name :
       {".velt-" + own + "-0.tmp", std::string(".velt-1-0.tmp"), std::string(".velt-0-0.tmp"),
        ".velt-" + dead + "-.tmp", ".velt-" + dead + ".tmp", ".velt-" + dead + "-1x.tmp",
        ".velt-" + dead + "-0.tmp.txt", "velt-" + dead + "-0.tmp", ".velt--" + dead + "-0.tmp",
        std::string(".velt-.tmp"), std::string(".velt-99999999999999999999-0.tmp")}) {
    folder.Write(name, "not ours, or in use");
  }
  fs::create_directory(folder / (".velt-" + dead + "-2.tmp"));
  sub.Write("real", "old");
  fs::create_symlink(sub / "real", folder / "file");
  const auto others = folder.Entries();
  for (const TempFolder* place : {&folder, &sub}) {
    for (const char* number : {"0", "17"})
      place->Write(".velt-" + dead + "-" + number + ".tmp", "");
  }
  ASSERT_EQ(DiskFiles().Replace(folder / "file", "new", false), 0);
  EXPECT_EQ(folder.Entries(), others);
  EXPECT_EQ(sub.Entries(), 1);
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

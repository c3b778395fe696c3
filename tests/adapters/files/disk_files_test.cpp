#include "adapters/files/disk_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>

#include "adapters/files/folder_worker.h"
#include "adapters/files/full_disk.h"
#include "adapters/files/whole_file.h"
#include "support/process.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

struct DiskFilesTest : testing::Test {
  const TempFolder folder, sub;
  DiskFiles files;
  const fs::path file = folder / "file", backup = folder / "file.bak", kept = folder / "kept";
};

TEST_F(DiskFilesTest, ReplaceKeepsBackupRightsAndLinks) {
  // The second time over the border of a disk, where the backup cannot be another name.
  for (const fs::path& real : {sub / "real", "/dev/shm" / sub.Path().filename()}) {
    std::ofstream(real) << "one";
    ::chmod(real.c_str(), 0640);
    fs::create_symlink(real, file);
    ASSERT_EQ(files.Replace(file, "two", false), 0);
    EXPECT_FALSE(files.IsFile(backup));
    for (const char* bytes : {"three", "four"}) ASSERT_EQ(files.Replace(file, bytes, true), 0);
    EXPECT_EQ(files.Read(real).bytes + folder.Read("file.bak"), "fourthree");
    ASSERT_EQ(files.KeepAs(file, kept), 0);
    EXPECT_EQ(files.KeepAs(backup, kept), EEXIST);
    ASSERT_EQ(files.Restore(file, backup), 0);
    EXPECT_EQ(fs::read_symlink(file), real);
    EXPECT_EQ(files.Read(real).bytes + folder.Read("kept"), "threefour");
    for (const fs::path& path : {real, backup, kept}) {
      EXPECT_EQ(fs::symlink_status(path).permissions(), fs::perms(0640)) << path;
    }
    EXPECT_EQ(folder.Entries(), 3);
    EXPECT_EQ(files.Rename(backup, kept), EEXIST);
    EXPECT_EQ(files.Rename(kept, folder / "moved"), 0);
    for (const fs::path& path : {real, file, backup, folder / "moved"}) fs::remove(path);
  }
}

TEST_F(DiskFilesTest, AFailedOperationLeavesEverythingAsItWas) {
  for (const char* name : {"file", "file.bak", "blocked"}) folder.Write(name, "old");
  fs::create_directories(folder / "blocked.bak/full");
  ::mkfifo((folder / "pipe").c_str(), 0600);
  for (const auto& [name, error] :
       {std::pair{"blocked.bak", EISDIR}, {"missing/file", ENOENT}, {"pipe", EINVAL}}) {
    EXPECT_EQ(files.Replace(folder / name, "new", true), error) << name;
    EXPECT_EQ(files.Read(folder / name).error, error) << name;
  }
  EXPECT_EQ(files.Replace(folder / "blocked", "new", true), EISDIR);
  EXPECT_EQ(files.KeepAs(file, folder / "missing/kept"), ENOENT);
  EXPECT_EQ(files.Restore(file, folder / "missing"), ENOENT);
  for (const char* name : {"file", "file.bak", "blocked"}) EXPECT_EQ(folder.Read(name), "old");
  EXPECT_EQ(folder.Entries(), 5);
}

TEST_F(DiskFilesTest, AFullDiskCostsNothingAndABackupIsRestoredAllTheSame) {
  const FullDisk disk;
  folder.Write("file", "old");
  folder.Write("file.bak", "older");
  {
    // Also when it is full only in the middle of the writing, and nobody asked after each piece.
    WholeFile whole;
    ASSERT_EQ(whole.Open(file), 0);
    EXPECT_EQ(whole.Write("first"), 0);
    disk.Fill();
    EXPECT_EQ(whole.Write("second"), FullDisk::kError);
    disk.Free();
    EXPECT_EQ(whole.Write("last"), FullDisk::kError);
    EXPECT_EQ(whole.PutInPlace(true), FullDisk::kError);
  }
  disk.Fill();
  EXPECT_EQ(files.Replace(file, "new", true), FullDisk::kError);
  EXPECT_EQ(folder.Read("file") + folder.Read("file.bak"), "oldolder");
  EXPECT_EQ(folder.Entries(), 2);
  EXPECT_EQ(files.KeepAs(file, kept), 0);
  EXPECT_EQ(files.Restore(file, backup), 0);
  disk.Free();
  EXPECT_EQ(folder.Read("file") + folder.Read("file.bak") + folder.Read("kept"), "olderolderold");
  // The two are one file now, and the next replacement has to part them.
  ASSERT_EQ(files.Replace(file, "new", true), 0);
  EXPECT_EQ(folder.Read("file") + folder.Read("file.bak"), "newolder");
  EXPECT_EQ(folder.Entries(), 3);
}

TEST_F(DiskFilesTest, AFolderTellsFilesFromFoldersAndItsFilesAreRenamedAndRemoved) {
  fs::create_directory(folder / "sub");
  fs::create_directory_symlink(sub.Path(), folder / "link");
  ::mkfifo((folder / "pipe").c_str(), 0600);
  folder.Write("odd\xFF\n.wav", "");
  VirtualScheduler scheduler;
  FolderWorker worker(scheduler);
  FolderListing told{.error = -1};
  worker.List(folder.Path(), [&told](const FolderListing& listing) { told = listing; });
  ASSERT_TRUE(WaitUntil([&] { return scheduler.RunPosted(), told.error == 0; }, 5s));
  for (auto* names : {&told.folders, &told.files}) std::ranges::sort(*names);
  EXPECT_EQ(told.folders, (std::vector<fs::path>{"link", "sub"}));
  EXPECT_EQ(told.files, std::vector<fs::path>{"odd\xFF\n.wav"});

  const fs::path odd = folder / "odd\xFF\n.wav", byLink = folder / "link" / "kept";
  sub.Write("kept", "");
  int error = -1;
  const auto done = [&error](int of) { error = of; };
  const auto result = [&] {
    EXPECT_TRUE(WaitUntil([&] { return scheduler.RunPosted(), error >= 0; }, 5s));
    return std::exchange(error, -1);
  };
  worker.Rename(odd, folder / "pipe", {}, done);
  EXPECT_EQ(result(), EEXIST);
  worker.Rename(odd, file, {}, done);
  EXPECT_EQ(result(), 0);
  worker.Rename(byLink, folder / "b", sub / "kept", done);
  EXPECT_EQ(result(), EBUSY);
  worker.Remove(byLink, sub / "kept", done);
  EXPECT_EQ(result(), EBUSY);
  worker.Remove(file, byLink, done);
  EXPECT_EQ(result(), 0);
  worker.Remove(file, byLink, done);
  EXPECT_EQ(result(), ENOENT);
  EXPECT_TRUE(files.IsFile(byLink));
}

TEST_F(DiskFilesTest, WhatAKilledRunLeftIsRemovedAndNothingElse) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  ::waitpid(child, nullptr, 0);
  const std::string dead = ".velt-" + std::to_string(child);
  for (const std::string& name : {".velt-" + std::to_string(::getpid()) + "-0.tmp",
                                  dead + "-1x.tmp", dead.substr(1) + "-0.tmp"}) {
    folder.Write(name, "not ours, or in use");
  }
  folder.Write("file", "old");
  const auto others = folder.Entries();
  folder.Write(dead + "-17.tmp", "");
  ASSERT_EQ(files.Replace(file, "new", false), 0);
  EXPECT_EQ(folder.Entries(), others);
}

}  // namespace
}  // namespace velt

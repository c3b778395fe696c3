// Files that another program writes at the same time, on a real disk.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "adapters/files/disk_files.h"
#include "platform/watched_file.h"
#include "support/temp_folder.h"

namespace velt {
namespace {

namespace fs = std::filesystem;

struct StandingClock : Clock {
  SteadyTime now = SteadyTime() + std::chrono::hours(1);
  LocalTime Now() const override { return {}; }
  SteadyTime Elapsed() const override { return now; }
};

struct CountingFiles : DiskFiles {
  mutable int reads = 0;
  FileContent Read(const fs::path& path) const override {
    ++reads;
    return DiskFiles::Read(path);
  }
};

class SharedFiles : public ::testing::Test {
 protected:
  // Of two such files that differ in nothing but their content a disk may tell the same.
  void MakeOld(const std::string& name) {
    const timespec times[2] = {{1000, 0}, {1000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (folder / name).c_str(), times, 0), 0);
  }

  TempFolder folder;
  CountingFiles files;
  StandingClock clock;
};

TEST_F(SharedFiles, AreReadAgainOnlyWhenTheyMayHaveChanged) {
  WatchedFile file(files, clock, folder / "transmitter.cfg");
  EXPECT_FALSE(file.Look());
  EXPECT_FALSE(file.IsThere());

  folder.Write("TRANSMITTER.cfg", "off\n7");
  EXPECT_TRUE(file.Look()) << "the name in another case";
  EXPECT_EQ(file.Path().filename(), "TRANSMITTER.cfg");
  FieldReader half = file.Reader();
  EXPECT_EQ(half.Line(), "off");
  EXPECT_FALSE(half.Number()) << "it may go on";
  folder.Write("TRANSMITTER.cfg", "off\n7074000");
  EXPECT_TRUE(file.Look());
  EXPECT_TRUE(file.Look()) << "the same twice: it is whole";
  FieldReader whole = file.Reader();
  EXPECT_EQ(whole.Line(), "off");
  EXPECT_EQ(whole.Number32(), 7074000);

  // Written within one step of the disk's time, and of the same length.
  MakeOld("TRANSMITTER.cfg");
  EXPECT_TRUE(file.Look());
  folder.Write("TRANSMITTER.cfg", "off\n7099000");
  MakeOld("TRANSMITTER.cfg");
  EXPECT_TRUE(file.Look());
  EXPECT_EQ(file.Bytes(), "off\n7099000");
  EXPECT_TRUE(file.Look());

  clock.now += WatchedFile::kCoarsestTime + Milliseconds(1);
  const int before = files.reads;
  for (int i = 0; i < 10; ++i) EXPECT_FALSE(file.Look());
  EXPECT_EQ(files.reads, before);
  fs::remove(folder / "TRANSMITTER.cfg");
  EXPECT_TRUE(file.Look());
  EXPECT_FALSE(file.IsThere());
  folder.Write("transmitter.cfg", std::string(WatchedFile::kMostBytes + 1, 'x'));
  EXPECT_FALSE(file.Look());
  EXPECT_FALSE(file.IsThere()) << "nobody writes that much";
}

TEST_F(SharedFiles, AreReplacedOnlyWhileTheyAreAsTheyWereRead) {
  const fs::path path = folder / "transmitter.cfg";
  folder.Write("transmitter.cfg", "on\n7074000\n");
  ::chmod(path.c_str(), 0640);
  fs::create_symlink("transmitter.cfg", folder / "link");
  EXPECT_EQ(files.ReplaceIfSame(folder / "link", "on\n7074000\n", "on\n\n"), 0);
  EXPECT_EQ(files.Read(path).bytes, "on\n\n");
  struct stat now {};
  ::stat(path.c_str(), &now);
  EXPECT_EQ(now.st_mode & 0777U, 0640U);

  EXPECT_EQ(files.ReplaceIfSame(path, "on\n7074000\n", "lost"), EAGAIN);
  EXPECT_EQ(files.ReplaceIfSame(folder / "none", "", "made"), ENOENT);
  EXPECT_EQ(files.Read(path).bytes, "on\n\n");
  EXPECT_EQ(folder.Entries(), 2) << "nothing is left over";

  // The other program writes after the look and before the exchange.
  struct LateWriter : DiskFiles {
    fs::path path;
    mutable int reads = 0;
    FileContent Read(const fs::path& file) const override {
      FileContent content = DiskFiles::Read(file);
      if (reads++ == 0) std::ofstream(path, std::ios::binary) << "off\n";
      return content;
    }
  } late;
  late.path = path;
  EXPECT_EQ(late.ReplaceIfSame(path, "on\n\n", "on\n\n\n"), EAGAIN);
  EXPECT_EQ(files.Read(path).bytes, "off\n") << "what it wrote is not lost";
  EXPECT_EQ(folder.Entries(), 2);
}

TEST_F(SharedFiles, ArePublishedWhole) {
  const fs::path path = folder / "STATUSRX.CFG";
  const int reader = [&] {
    folder.Write("STATUSRX.CFG", "1\n");
    return ::open(path.c_str(), O_RDONLY);
  }();
  EXPECT_EQ(files.Publish(path, "22\n"), 0);
  char old[8] = {};
  EXPECT_EQ(::read(reader, old, sizeof old), 2) << "who reads the old one reads all of it";
  ::close(reader);
  EXPECT_EQ(files.Read(path).bytes, "22\n");
  EXPECT_EQ(files.Publish(folder.Path(), "x"), EISDIR);
  EXPECT_EQ(files.Publish(folder / "none" / "x", "x"), ENOENT);
}

}  // namespace
}  // namespace velt

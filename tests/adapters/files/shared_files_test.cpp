// Files that another program writes at the same time, on a real disk.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <fstream>

#include "adapters/files/disk_files.h"
#include "platform/watched_file.h"
#include "support/doubles.h"
#include "support/temp_folder.h"

namespace velt {
namespace {

namespace fs = std::filesystem;

// The other program may write after a look and before what follows.
struct MeddledFiles : DiskFiles {
  mutable int reads = 0;
  std::string late;  // what it writes after the first read
  FileContent Read(const fs::path& path) const override {
    FileContent content = DiskFiles::Read(path);
    if (reads++ == 0 && !late.empty()) std::ofstream(path, std::ios::binary) << late;
    return content;
  }
};

struct SharedFiles : testing::Test {
  TempFolder folder;
  MeddledFiles files;
  VirtualScheduler scheduler;
  FakeClock clock{scheduler};
};

TEST_F(SharedFiles, AreReadAgainOnlyWhenTheyMayHaveChanged) {
  WatchedFile file(files, clock, folder / "transmitter.cfg");
  EXPECT_FALSE(file.Look());
  folder.Write("TRANSMITTER.cfg", "off\n7");
  EXPECT_TRUE(file.Look()) << "the name in another case";
  FieldReader half = file.Reader();
  EXPECT_EQ(half.Line(), "off");
  EXPECT_FALSE(half.Number()) << "it may go on";

  // Written within one step of the disk's time, and of the same length.
  for (const char* text : {"off\n7074000", "off\n7099000"}) {
    folder.Write("TRANSMITTER.cfg", text);
    const timespec times[2] = {{1000, 0}, {1000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "TRANSMITTER.cfg").c_str(), times, 0), 0);
    EXPECT_TRUE(file.Look());
    EXPECT_EQ(file.Bytes(), text);
    EXPECT_TRUE(file.Look()) << "the same twice: it is whole";
  }
  FieldReader whole = file.Reader();
  EXPECT_EQ(whole.Line(), "off");
  EXPECT_EQ(whole.Number32(), 7099000);

  clock.slept += WatchedFile::kCoarsestTime + Milliseconds(1);
  const int before = files.reads;
  for (int i = 0; i < 10; ++i) EXPECT_FALSE(file.Look());
  EXPECT_EQ(files.reads, before);
  const auto written = fs::last_write_time(folder / "TRANSMITTER.cfg");
  folder.Write("TRANSMITTER.cfg", "off\n7033000");
  fs::last_write_time(folder / "TRANSMITTER.cfg", written);
  EXPECT_TRUE(file.Look()) << "its time was put back";
  fs::remove(folder / "TRANSMITTER.cfg");
  EXPECT_TRUE(file.Look());
  EXPECT_FALSE(file.IsThere());
  folder.Write("transmitter.cfg", std::string(WatchedFile::kMostBytes + 1, 'x'));
  EXPECT_FALSE(file.Look());
  EXPECT_FALSE(file.IsThere()) << "nobody writes that much";
}

TEST_F(SharedFiles, AreReplacedOnlyAsTheyWereReadAndPublishedWhole) {
  const fs::path path = folder / "transmitter.cfg";
  folder.Write("transmitter.cfg", "on\n7074000\n");
  fs::create_symlink("transmitter.cfg", folder / "link");
  EXPECT_EQ(files.ReplaceIfSame(folder / "link", "on\n7074000\n", "on\n\n"), 0);
  EXPECT_EQ(files.Read(path).bytes, "on\n\n");
  EXPECT_EQ(files.ReplaceIfSame(path, "on\n7074000\n", "lost"), EAGAIN);
  EXPECT_EQ(files.ReplaceIfSame(folder / "none", "", "made"), ENOENT);
  EXPECT_EQ(files.Read(path).bytes, "on\n\n");

  files.reads = 0;
  files.late = "off\n";
  EXPECT_EQ(files.ReplaceIfSame(path, "on\n\n", "on\n\n\n"), EAGAIN);
  EXPECT_EQ(files.Read(path).bytes, "off\n") << "what it wrote is not lost";

  std::ifstream reader(path);
  EXPECT_EQ(files.Publish(path, "22\n"), 0);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "off\n")
      << "who reads the old one reads all of it";
  EXPECT_EQ(files.Read(path).bytes, "22\n");
  EXPECT_EQ(files.Publish(folder.Path(), "x"), EISDIR);
  EXPECT_EQ(folder.Entries(), 2) << "nothing is left over";
}

}  // namespace
}  // namespace velt

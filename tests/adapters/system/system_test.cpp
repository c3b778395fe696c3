#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <ctime>

#include "adapters/system/linux_system_info.h"
#include "adapters/system/local_clock.h"
#include "adapters/system/posix_instance_lock.h"
#include "support/temp_folder.h"

namespace velt {
namespace {

TEST(PosixInstanceLock, OneHolderUntilItsProcessEnds) {
  const ScratchFolder folder;
  ::setenv("XDG_RUNTIME_DIR", (folder / "").c_str(), 1);
  std::array<int, 2> held{};
  ASSERT_EQ(::pipe(held.data()), 0);
  const pid_t holder = ::fork();
  if (holder == 0) {
    PosixInstanceLock lock;
    const bool alone = lock.TryHold() && lock.TryHold();
    // A program started by the holder, as the engine is, must not keep the lock alive.
    const pid_t started = ::fork();
    if (started == 0) ::execl("/bin/sleep", "sleep", "60", nullptr);
    const pid_t told = alone ? started : 0;
    while (::write(held[1], &told, sizeof told) == sizeof told) ::pause();
  }
  pid_t started = 0;
  ASSERT_EQ(::read(held[0], &started, sizeof started), static_cast<ssize_t>(sizeof started));
  ASSERT_GT(started, 0);
  PosixInstanceLock lock;
  EXPECT_FALSE(lock.TryHold());
  EXPECT_FALSE(lock.TryHold());
  ::kill(holder, SIGKILL);
  ::waitpid(holder, nullptr, 0);
  for (const int end : held) ::close(end);
  // The started program may not have come to its own code yet.
  bool holds = lock.TryHold();
  for (int i = 0; i < 400 && !holds; ++i, holds = lock.TryHold()) ::usleep(5000);
  EXPECT_TRUE(holds);
  EXPECT_EQ(::kill(started, SIGKILL), 0);
}

TEST(PosixInstanceLock, FindsAFolderOrCountsAsAlone) {
  const ScratchFolder folder;
  folder.Write("file", "");
  ::setenv("XDG_RUNTIME_DIR", (folder / "none").c_str(), 1);
  ::setenv("HOME", (folder / "home").c_str(), 1);
  const std::string cache = folder / "cache";
  const std::string belowFile = folder / "file/cache";
  struct Case {
    const char *cache, *file;  // the lock's file; empty when there is nowhere to make one
  };
  for (const Case& c :
       {Case{cache.c_str(), "cache/velt-sa.lock"}, Case{"", "home/.cache/velt-sa.lock"},
        Case{"relative", "home/.cache/velt-sa.lock"}, Case{belowFile.c_str(), ""}}) {
    ::setenv("XDG_CACHE_HOME", c.cache, 1);
    PosixInstanceLock first;
    PosixInstanceLock second;
    EXPECT_TRUE(first.TryHold());
    EXPECT_EQ(second.TryHold(), *c.file == '\0') << c.cache;
    EXPECT_TRUE(std::filesystem::exists(folder / c.file)) << c.cache;
  }
}

TEST(LinuxSystemInfo, VersionAndHome) {
  const auto texts = [](const std::string& release) {
    const auto version = LinuxSystemInfo::VersionIn(release);
    return version ? std::to_string(version->major) + ' ' + std::to_string(version->minor) : "none";
  };
  EXPECT_EQ(texts("6.1.0-18-amd64"), "6 1");
  EXPECT_EQ(texts("10.20-rc3"), "10 20");
  for (const char* release : {"", "6", "6.", "6.x", "v6.1", "-6.1", "99999999999.1"}) {
    EXPECT_EQ(texts(release), "none") << release;
  }
  const LinuxSystemInfo info;
  EXPECT_TRUE(info.Version());
  ::setenv("HOME", "/some/where", 1);
  EXPECT_EQ(info.SpecialFolder(40), "/some/where");
  EXPECT_EQ(info.SpecialFolder(5), "");
  ::unsetenv("HOME");
  EXPECT_TRUE(info.SpecialFolder(40).starts_with("/"));
}

TEST(LocalClock, TellsTheTimeOfTheUsersZone) {
  ::setenv("TZ", "VLT-13:30", 1);
  ::tzset();
  const std::time_t before = std::time(nullptr);
  const LocalTime now = LocalClock().Now();
  std::tm parts{};
  parts.tm_year = now.year - 1900;
  parts.tm_mon = now.month - 1;
  parts.tm_mday = now.day;
  parts.tm_hour = now.hour;
  parts.tm_min = now.minute;
  parts.tm_sec = now.second;
  EXPECT_NEAR(static_cast<double>(::timegm(&parts) - before), (13 * 60 + 30) * 60, 2);
}

}  // namespace
}  // namespace velt

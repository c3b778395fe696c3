#include <gtest/gtest.h>
#include <spawn.h>
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

TEST(PosixInstanceLock, OneHolderWhateverItHasStarted) {
  const TempFolder folder;
  ::setenv("XDG_RUNTIME_DIR", folder.Path().c_str(), 1);
  std::optional<PosixInstanceLock> first(std::in_place);
  EXPECT_TRUE(first->TryHold() && first->TryHold());
  // A program started by the holder, as the engine is, must not keep the lock alive.
  std::string sleep = "sleep", seconds = "60";
  const std::array<char*, 3> arguments{sleep.data(), seconds.data(), nullptr};
  pid_t started = 0;
  ASSERT_EQ(::posix_spawnp(&started, "sleep", nullptr, nullptr, arguments.data(), nullptr), 0);
  PosixInstanceLock second;
  EXPECT_FALSE(second.TryHold());
  first.reset();
  EXPECT_TRUE(second.TryHold());
  ::kill(started, SIGKILL);
  ::waitpid(started, nullptr, 0);
}

TEST(PosixInstanceLock, FindsAFolderOrCountsAsAlone) {
  const TempFolder folder;
  folder.Write("file", "");
  ::setenv("XDG_RUNTIME_DIR", (folder / "none").c_str(), 1);
  for (const std::string cache : {"cache", "file/below"}) {
    ::setenv("XDG_CACHE_HOME", (folder / cache).c_str(), 1);
    PosixInstanceLock first, second;
    EXPECT_TRUE(first.TryHold());
    EXPECT_EQ(second.TryHold(), cache != "cache");
    EXPECT_EQ(std::filesystem::exists(folder / "cache/velt-sa.lock"), cache == "cache");
    std::filesystem::remove_all(folder / "cache");
  }
}

TEST(LinuxSystemInfo, VersionIsThatOfTheKernel) {
  const auto version = LinuxSystemInfo::VersionIn("6.10.0-18-amd64");
  EXPECT_TRUE(version && version->major == 6 && version->minor == 10);
  for (const char* release : {"", "6.", "6.x", "v6.1", "-6.1", "99999999999.1"}) {
    EXPECT_FALSE(LinuxSystemInfo::VersionIn(release)) << release;
  }
}

TEST(LocalClock, TellsTheTimeOfTheUsersZone) {
  ::setenv("TZ", "VLT-13:30", 1);
  ::tzset();
  const std::time_t shifted = std::time(nullptr) + (13 * 60 + 30) * 60;
  const std::tm expected = *std::gmtime(&shifted);
  const LocalTime now = LocalClock().Now();
  EXPECT_EQ((std::array{now.year, now.month, now.day, now.hour, now.minute}),
            (std::array{1900 + expected.tm_year, 1 + expected.tm_mon, expected.tm_mday,
                        expected.tm_hour, expected.tm_min}));
}

}  // namespace
}  // namespace velt

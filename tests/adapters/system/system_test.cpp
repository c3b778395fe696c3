#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <map>
#include <optional>

#include "adapters/system/linux_system_info.h"
#include "adapters/system/local_clock.h"
#include "adapters/system/posix_instance_lock.h"
#include "support/temp_folder.h"

namespace velt {
namespace {

// Sets or removes variables for one test.
class Environment {
 public:
  void Set(const char* name, std::optional<std::string> value) {
    const char* old = std::getenv(name);
    before_.try_emplace(name, old == nullptr ? std::nullopt : std::optional<std::string>(old));
    Put(name, value);
  }
  ~Environment() {
    for (const auto& [name, value] : before_) Put(name.c_str(), value);
  }

 private:
  static void Put(const char* name, const std::optional<std::string>& value) {
    if (value) {
      ::setenv(name, value->c_str(), 1);
    } else {
      ::unsetenv(name);
    }
  }
  std::map<std::string, std::optional<std::string>> before_;
};

TEST(PosixInstanceLock, OneHolderUntilItsProcessEnds) {
  const TempFolder folder;
  Environment environment;
  environment.Set("XDG_RUNTIME_DIR", folder.Path().string());
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
    ::_exit(1);
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
  bool holds = false;
  for (int i = 0; i < 200 && !holds; ++i) {
    holds = lock.TryHold();
    if (!holds) ::usleep(5000);
  }
  EXPECT_TRUE(holds);
  EXPECT_EQ(::kill(started, SIGKILL), 0);
}

TEST(PosixInstanceLock, FindsAFolderOrCountsAsAlone) {
  const TempFolder folder;
  folder.Write("file", "");
  const std::string path = folder.Path().string();
  struct Case {
    std::optional<std::string> runtime, cache, home;
    const char* file;  // where the lock is; empty when there is nowhere to make one
  };
  for (const Case& c : {Case{path + "/none", path + "/cache/deep", path, "cache/deep/velt-sa.lock"},
                        Case{std::nullopt, std::nullopt, path, ".cache/velt-sa.lock"},
                        Case{std::nullopt, "relative", path, ".cache/velt-sa.lock"},
                        Case{std::nullopt, path + "/file/cache", path, ""}}) {
    Environment environment;
    environment.Set("XDG_RUNTIME_DIR", c.runtime);
    environment.Set("XDG_CACHE_HOME", c.cache);
    environment.Set("HOME", c.home);
    PosixInstanceLock first;
    PosixInstanceLock second;
    EXPECT_TRUE(first.TryHold());
    EXPECT_EQ(second.TryHold(), *c.file == '\0');
    EXPECT_TRUE(std::filesystem::exists(folder / c.file)) << c.file;
  }
}

TEST(LinuxSystemInfo, VersionHomeAndFallbacks) {
  struct Case {
    const char* release;
    int32_t major, minor;  // negative: none
  };
  for (const Case& c :
       {Case{"6.1.0-18-amd64", 6, 1}, Case{"5.15-rc3", 5, 15}, Case{"10.20", 10, 20},
        Case{"6", -1, -1}, Case{"6.", -1, -1}, Case{"6.x", -1, -1}, Case{"", -1, -1},
        Case{"v6.1", -1, -1}, Case{"-6.1", -1, -1}, Case{"99999999999.1", -1, -1}}) {
    const auto version = LinuxSystemInfo::VersionIn(c.release).value_or(SystemVersion{-1, -1});
    EXPECT_EQ(version.major, c.major) << c.release;
    EXPECT_EQ(version.minor, c.minor) << c.release;
  }
  const LinuxSystemInfo info;
  EXPECT_GE(info.Version().value_or(SystemVersion{}).major, 3);
  Environment environment;
  environment.Set("HOME", "/some/where");
  EXPECT_EQ(info.SpecialFolder(40), "/some/where");
  EXPECT_EQ(info.SpecialFolder(5), "");
  environment.Set("HOME", std::nullopt);
  EXPECT_TRUE(info.SpecialFolder(40).starts_with("/"));
  EXPECT_EQ(info.RegistryString(RegistryRoot::ClassesRoot, "TypeLib", ""), "");
}

TEST(LocalClock, TellsTheTimeOfTheUsersZone) {
  Environment environment;
  const LocalClock clock;
  for (const char* zone : {"UTC0", "VLT-13:30"}) {
    environment.Set("TZ", zone);
    ::tzset();
    const std::time_t before = std::time(nullptr);
    const LocalTime now = clock.Now();
    std::tm parts{};
    parts.tm_year = now.year - 1900;
    parts.tm_mon = now.month - 1;
    parts.tm_mday = now.day;
    parts.tm_hour = now.hour;
    parts.tm_min = now.minute;
    parts.tm_sec = now.second;
    const std::time_t told = ::timegm(&parts) - (zone[0] == 'V' ? (13 * 60 + 30) * 60 : 0);
    EXPECT_GE(told, before) << zone;
    EXPECT_LE(told, std::time(nullptr)) << zone;
  }
}

}  // namespace
}  // namespace velt

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <optional>

#include "adapters/system/posix_instance_lock.h"
#include "support/temp_folder.h"

namespace velt {
namespace {

TEST(PosixInstanceLock, OneHolderWhateverItHasStartedWhereThereIsAFolder) {
  const TempFolder folder;
  ::setenv("XDG_RUNTIME_DIR", (folder / "none").c_str(), 1);
  ::setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
  std::optional<PosixInstanceLock> first(std::in_place);
  EXPECT_TRUE(first->TryHold() && first->TryHold());
  // A program started by the holder, as the engine is, must not keep the lock alive.
  std::array<char, 6> sleep{"sleep"}, seconds{"60"};
  const std::array<char*, 3> arguments{sleep.data(), seconds.data(), nullptr};
  pid_t started = 0;
  ASSERT_EQ(::posix_spawnp(&started, "sleep", nullptr, nullptr, arguments.data(), nullptr), 0);
  PosixInstanceLock second;
  EXPECT_FALSE(second.TryHold());
  first.reset();
  EXPECT_TRUE(second.TryHold());
  ::kill(started, SIGKILL);
  ::waitpid(started, nullptr, 0);

  ::setenv("XDG_CACHE_HOME", (folder / "cache/velt-sa.lock/below").c_str(), 1);
  PosixInstanceLock third, fourth;
  EXPECT_TRUE(third.TryHold() && fourth.TryHold());
}

}  // namespace
}  // namespace velt

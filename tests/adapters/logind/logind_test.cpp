// The lock against sleep, with a login manager and without.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <cstdlib>

#include "adapters/logind/logind_sleep_lock.h"
#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/live_loop.h"
#include "support/doubles.h"
#include "support/login_manager.h"

namespace velt {
namespace {

struct LogindTest : testing::Test {
  QtScheduler scheduler;
  FakeLog log;
  std::unique_ptr<LogindSleepLock> lock;
  Connection connection;
  int sleeps = 0;
  LogindTest() {
    EnsureLoop();
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", LoginManager::Address().c_str(), 1);
    lock = std::make_unique<LogindSleepLock>(scheduler, log);
    connection = lock->goingToSleep.Listen([this] { ++sleeps; });
  }
};

TEST_F(LogindTest, TheLockIsHeldAsLongAsItIsWantedAndOutlivesTheBus) {
  for (int bus = 1; bus <= 2; ++bus) {
    LoginManager manager;
    const auto locked = [&] { return manager.Locked(); };
    const auto free = [&] { return !manager.Locked(); };
    for (size_t round = 1; round <= 2; ++round) {
      lock->Hold();
      lock->Hold();
      ASSERT_TRUE(LoopUntil(locked)) << bus;
      EXPECT_EQ(manager.asked,
                std::vector<std::string>(round, "sleep|VELT-SA|A transmitter is keyed|delay"));
      manager.GoToSleep(false);
      manager.GoToSleep();
      EXPECT_TRUE(LoopUntil([&] { return sleeps > 0; }));
      EXPECT_EQ(std::exchange(sleeps, 0), 1);
      EXPECT_TRUE(manager.Locked()) << "until what has to be done is done";
      if (round == 2) break;
      lock->LetGo();
      EXPECT_TRUE(LoopUntil(free));
    }
    manager.bus.Kill();
    EXPECT_FALSE(LoopUntil(free, std::chrono::milliseconds(100)));
    bus == 1 ? lock->LetGo() : lock.reset();
    EXPECT_TRUE(LoopUntil(free));
  }
  EXPECT_TRUE(log.lines.empty());
}

TEST_F(LogindTest, WithoutAManagerThereIsALineInTheLogAndNothingIsHeldUp) {
  const auto told = [&] { return !std::exchange(log.lines, {}).empty(); };
  lock->Hold();
  EXPECT_TRUE(LoopUntil(told)) << "without a bus";
  LoginManager manager;
  manager.bus.Signal(SIGSTOP);
  QElapsedTimer since;
  since.start();
  lock = std::make_unique<LogindSleepLock>(scheduler, log);
  lock->Hold();
  lock->LetGo();
  lock->Hold();
  EXPECT_FALSE(LoopUntil(told, std::chrono::milliseconds(200)));
  lock.reset();
  EXPECT_LT(since.elapsed(), 500);
}

}  // namespace
}  // namespace velt

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
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", MessageBus::Address().c_str(), 1);
    lock = std::make_unique<LogindSleepLock>(scheduler, log);
    connection = lock->goingToSleep.Listen([this] { ++sleeps; });
  }
  bool HearsOfSleep(LoginManager& manager) {
    manager.GoToSleep();
    return LoopUntil([&] { return sleeps > 0; });
  }
  static bool Becomes(const LoginManager& manager, bool locked,
                      std::chrono::milliseconds limit = std::chrono::seconds(8)) {
    return LoopUntil([&] { return manager.Locked() == locked; }, limit);
  }
};

TEST_F(LogindTest, TheLockIsHeldForAsLongAsItIsWanted) {
  LoginManager manager;
  for (size_t round = 1; round <= 2; ++round) {
    lock->Hold();
    lock->Hold();
    EXPECT_TRUE(Becomes(manager, true));
    EXPECT_EQ(manager.asked,
              std::vector<std::string>(round, "sleep|VELT-SA|A transmitter is keyed|delay"));
    manager.GoToSleep(false);
    EXPECT_TRUE(HearsOfSleep(manager));
    EXPECT_EQ(std::exchange(sleeps, 0), 1);
    EXPECT_TRUE(manager.Locked()) << "until what has to be done is done";
    lock->LetGo();
    EXPECT_TRUE(Becomes(manager, false));
  }
  EXPECT_TRUE(log.lines.empty());
}

TEST_F(LogindTest, TheLockOutlivesTheBusAndEndsWithItsOwner) {
  for (int bus = 1; bus <= 2; ++bus) {
    LoginManager manager;
    lock->Hold();
    ASSERT_TRUE(Becomes(manager, true)) << bus;
    // What was sent before, the lock, has come too.
    EXPECT_TRUE(HearsOfSleep(manager));
    sleeps = 0;
    manager.bus.Kill();
    EXPECT_FALSE(Becomes(manager, false, std::chrono::milliseconds(100)));
    bus == 1 ? lock->LetGo() : lock.reset();
    EXPECT_TRUE(Becomes(manager, false)) << bus;
  }
}

TEST_F(LogindTest, WithoutAManagerThereIsALineInTheLogAndNothingIsHeldUp) {
  const auto told = [&] { return !log.lines.empty(); };
  lock->LetGo();
  lock->Hold();
  EXPECT_TRUE(LoopUntil(told)) << "without a bus";
  MessageBus bus;
  log.lines.clear();
  lock->Hold();
  EXPECT_TRUE(LoopUntil(told));
  EXPECT_EQ(log.lines.size(), 1U);
  bus.Freeze();
  log.lines.clear();
  QElapsedTimer since;
  since.start();
  lock = std::make_unique<LogindSleepLock>(scheduler, log);
  lock->Hold();
  lock->LetGo();
  lock->Hold();
  EXPECT_LT(since.elapsed(), 100);
  EXPECT_FALSE(LoopUntil(told, std::chrono::milliseconds(200)));
  lock.reset();
  EXPECT_LT(since.elapsed(), 500);
}

}  // namespace
}  // namespace velt

// The lock against sleep, with a login manager and without.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <cstdlib>

#include "adapters/logind/logind_sleep_lock.h"
#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/live_loop.h"
#include "support/login_manager.h"

namespace velt {
namespace {

struct KeptLog : Log {
  std::vector<std::string> lines;
  void Write(LogLevel level, const char*, std::string_view text) override {
    EXPECT_EQ(level, LogLevel::Debug) << "nothing that would be shown";
    lines.emplace_back(text);
  }
};

struct LogindTest : testing::Test {
  QtScheduler scheduler;
  KeptLog log;
  LogindTest() {
    EnsureLoop();
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", MessageBus::Address().c_str(), 1);
  }
};

TEST_F(LogindTest, TheLockIsHeldForAsLongAsItIsWanted) {
  LoginManager manager;
  LogindSleepLock lock(scheduler, log);
  int sleeps = 0;
  const Connection connection = lock.goingToSleep.Listen([&] { ++sleeps; });
  for (size_t round = 1; round <= 2; ++round) {
    lock.Hold();
    lock.Hold();
    EXPECT_TRUE(LoopUntil([&] { return manager.Locked(); }));
    EXPECT_EQ(manager.asked,
              std::vector<std::string>(round, "sleep|VELT-SA|A transmitter is keyed|delay"));
    manager.GoToSleep(false);
    manager.GoToSleep();
    EXPECT_TRUE(LoopUntil([&] { return sleeps > 0; }));
    EXPECT_EQ(std::exchange(sleeps, 0), 1);
    EXPECT_TRUE(manager.Locked()) << "until what has to be done is done";
    lock.LetGo();
    EXPECT_TRUE(LoopUntil([&] { return !manager.Locked(); }));
  }
  manager.holdsBack = true;
  for (const bool wantedAgain : {false, true}) {
    const size_t before = manager.asked.size();
    lock.Hold();
    ASSERT_TRUE(LoopUntil([&] { return manager.asked.size() == before + 1; }));
    lock.LetGo();
    if (wantedAgain) lock.Hold();
    manager.AnswerNow();
    ASSERT_TRUE(manager.Locked());
    const auto letGo = [&] { return !manager.Locked(); };
    EXPECT_EQ(LoopUntil(letGo, std::chrono::seconds(1)), !wantedAgain);
  }
  EXPECT_TRUE(log.lines.empty());
}

TEST_F(LogindTest, TheLockOutlivesTheBusAndEndsWithItsOwner) {
  auto lock = std::make_unique<LogindSleepLock>(scheduler, log);
  for (int bus = 1; bus <= 2; ++bus) {
    LoginManager manager;
    lock->Hold();
    ASSERT_TRUE(LoopUntil([&] { return manager.Locked(); })) << bus;
    manager.bus.Kill();
    EXPECT_FALSE(LoopUntil([&] { return !manager.Locked(); }, std::chrono::milliseconds(100)));
    bus == 1 ? lock->LetGo() : lock.reset();
    EXPECT_TRUE(LoopUntil([&] { return !manager.Locked(); })) << bus;
  }
}

TEST_F(LogindTest, WithoutABusOrAManagerThereIsALineInTheLog) {
  std::unique_ptr<MessageBus> bus;
  for (const bool withABus : {false, true}) {
    if (withABus) bus = std::make_unique<MessageBus>();
    LogindSleepLock lock(scheduler, log);
    lock.LetGo();
    lock.Hold();
    EXPECT_TRUE(LoopUntil([&] { return !log.lines.empty(); })) << withABus;
    EXPECT_EQ(log.lines.size(), 1U);
    log.lines.clear();
  }
}

TEST_F(LogindTest, ABusThatStandsStillHoldsNothingUp) {
  MessageBus bus;
  bus.Freeze();
  QElapsedTimer since;
  since.start();
  {
    LogindSleepLock lock(scheduler, log);
    lock.Hold();
    lock.LetGo();
    lock.Hold();
    EXPECT_LT(since.elapsed(), 100);
    EXPECT_FALSE(LoopUntil([&] { return !log.lines.empty(); }, std::chrono::milliseconds(200)));
  }
  EXPECT_LT(since.elapsed(), 500);
}

}  // namespace
}  // namespace velt

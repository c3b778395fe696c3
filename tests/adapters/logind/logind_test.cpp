// The lock against sleep without a login manager that answers.
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

TEST(Logind, WithoutAManagerThereIsALineInTheLogAndNothingIsHeldUp) {
  EnsureLoop();
  ::setenv("DBUS_SYSTEM_BUS_ADDRESS", LoginManager::Address().c_str(), 1);
  QtScheduler scheduler;
  FakeLog log;
  auto lock = std::make_unique<LogindSleepLock>(scheduler, log);
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

#include "adapters/qt/qt_scheduler.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <thread>

namespace velt {
namespace {

TEST(QtScheduler, RunsWhatIsDueInOrderAndNothingThatWasCancelled) {
  int argc = 0;
  const QCoreApplication application(argc, nullptr);
  QtScheduler scheduler;
  QEventLoop loop;
  std::string heard;
  std::vector<Scheduler::Handle> handles(7);
  const auto after = [&](size_t index, int ms, std::function<void()> then = {}) {
    handles[index] = scheduler.After(Milliseconds(ms), [&heard, index, then] {
      heard += std::to_string(index);
      if (then) then();
    });
  };
  after(0, 60, [&loop] { loop.quit(); });
  after(1, 20, [&] {
    handles[1].Cancel();  // itself, and one that is due at the same time
    handles[3].Cancel();
    after(5, 0, [&] { after(6, 10); });
  });
  after(2, 1);
  after(3, 20);
  after(4, 10);
  handles[4].Cancel();
  std::thread::id ran;
  std::thread([&] { scheduler.Post([&] { ran = std::this_thread::get_id(); }); }).join();
  EXPECT_EQ(ran, std::thread::id());
  loop.exec();
  EXPECT_EQ(heard, "21560");
  EXPECT_EQ(ran, std::this_thread::get_id());
}

}  // namespace
}  // namespace velt

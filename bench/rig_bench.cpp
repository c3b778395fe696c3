// From SetFreq() to the command at the server, over the loopback. Fails when the median is above
// 5 ms.
#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/rigctld_server.h"
#include "cat_listener.h"
#include "processor.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kWrites = 1000;
constexpr int32_t kFirstHz = 14'000'000;
constexpr double kMostMs = 5.0;

}  // namespace

int main(int count, char** arguments) {
  QCoreApplication application(count, arguments);
  velt::CatListener listener;
  velt::QtScheduler scheduler;
  velt::RigctldServer server(scheduler);
  server.SetAddress(1, listener.Address());
  server.Open(1, {});

  // Writes come at odd moments, some of them while a poll is under way.
  std::mt19937 random(1);
  std::uniform_int_distribution<int> pauseMs(2, 20);
  std::vector<Clock::time_point> sent;
  QTimer next;
  next.setTimerType(Qt::PreciseTimer);
  QObject::connect(&next, &QTimer::timeout, [&] {
    const auto now = Clock::now();
    if (sent.size() == kWrites) {
      next.stop();
      QTimer::singleShot(200, &application, &QCoreApplication::quit);
    } else if (server.Rig1().SetFreq(kFirstHz + static_cast<int32_t>(sent.size()))) {
      sent.push_back(now);
    }
    if (next.isActive()) next.start(pauseMs(random));
  });
  next.start(100);
  QTimer::singleShot(60'000, &application, &QCoreApplication::quit);
  application.exec();

  std::vector<double> took;
  for (const auto& [command, arrived] : listener.Arrivals()) {
    const auto index = static_cast<size_t>(std::stoi(command.substr(3)) - kFirstHz);
    took.push_back(std::chrono::duration<double, std::milli>(arrived - sent[index]).count());
  }
  server.Close();
  if (took.size() < kWrites * 9 / 10) {
    std::printf("only %zu of %d writes arrived\n", took.size(), kWrites);
    return 1;
  }
  std::sort(took.begin(), took.end());
  const double median = took[took.size() / 2];
  std::printf("%s\n", velt::ProcessorName().c_str());
  std::printf("SetFreq to the wire, %zu writes: median %.3f ms, 95%% %.3f ms, worst %.3f ms\n",
              took.size(), median, took[took.size() * 95 / 100], took.back());
  return median <= kMostMs ? 0 : 1;
}

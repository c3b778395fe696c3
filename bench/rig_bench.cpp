// From SetFreq() to the command at the server, over the loopback. Fails when the median is above
// 5 ms.
#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/fake_rig.h"
#include "adapters/rigctld/rigctld_server.h"
#include "processor.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kWrites = 1000;
constexpr int32_t kFirstHz = 14'000'000;
constexpr double kMostMs = 5.0;

// Answers one client at once and notes when each frequency arrived.
class Listener {
 public:
  Listener() {
    socket_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    if (::bind(socket_, plain, size) != 0 || ::listen(socket_, 1) != 0 ||
        ::getsockname(socket_, plain, &size) != 0) {
      std::perror("listener");
    }
    port = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
  }
  ~Listener() {
    ::shutdown(socket_, SHUT_RDWR);
    thread_.join();
    ::close(socket_);
  }
  std::map<int32_t, Clock::time_point> Arrivals() {
    const std::lock_guard lock(mutex_);
    return arrivals_;
  }

  uint16_t port = 0;

 private:
  void Serve() {
    const int client = ::accept(socket_, nullptr, nullptr);
    velt::FakeRig rig;
    std::string text;
    std::array<char, 4096> bytes;
    for (ssize_t n; (n = ::recv(client, bytes.data(), bytes.size(), 0)) > 0;) {
      const auto now = Clock::now();
      text.append(bytes.data(), static_cast<size_t>(n));
      for (size_t end; (end = text.find('\n')) != std::string::npos; text.erase(0, end + 1)) {
        const std::string line = text.substr(0, end);
        if (line.starts_with("+F ")) {
          const std::lock_guard lock(mutex_);
          arrivals_[std::stoi(line.substr(3))] = now;
        }
        const std::string answer = rig.Answer(line);
        ::send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
      }
    }
    ::close(client);
  }

  int socket_ = -1;
  std::mutex mutex_;
  std::map<int32_t, Clock::time_point> arrivals_;
  std::thread thread_;
};

}  // namespace

int main(int count, char** arguments) {
  QCoreApplication application(count, arguments);
  Listener listener;
  velt::QtScheduler scheduler;
  velt::RigctldServer server(scheduler);
  server.SetAddress(1, "127.0.0.1:" + std::to_string(listener.port));
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
  for (const auto& [hz, arrived] : listener.Arrivals()) {
    const auto index = static_cast<size_t>(hz - kFirstHz);
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

// A running event loop and the dummy rig's server for tests.
#pragma once

#include <sys/wait.h>

#include <QCoreApplication>
#include <QTcpServer>
#include <QTcpSocket>
#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "support/process.h"

namespace velt {

// Sockets and timers need the application to be there first.
inline void EnsureLoop() {
  if (QCoreApplication::instance() != nullptr) return;
  static int none = 0;
  static QCoreApplication application(none, nullptr);
}

// Runs the loop until the condition holds (true) or the limit is over (false).
inline bool LoopUntil(const std::function<bool()>& condition,
                      std::chrono::milliseconds limit = std::chrono::seconds(8)) {
  EnsureLoop();
  const auto turn = [&condition] {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return condition();
  };
  return WaitUntil(turn, limit);
}

inline uint16_t FreePort() {
  EnsureLoop();
  QTcpServer server;
  server.listen(QHostAddress::LocalHost);
  return server.serverPort();
}

// The server of the dummy rig on a port of its own, and a second client that looks at the rig.
class DummyRig {
 public:
  DummyRig() {
    // Somebody else may take the port before the server does.
    for (int tries = 0; tries < 5 && !Start(); ++tries) port_ = FreePort();
  }

  uint16_t Port() const { return port_; }
  std::string Address() const { return "127.0.0.1:" + std::to_string(port_); }
  // Whether it has come up, on the same port as ever.
  bool Start() {
    client_.abort();
    if (!Ask("f").empty()) return false;  // another server's
    process_ = std::make_unique<Process>(
        std::vector<std::string>{"rigctld", "-m", "1", "-P", "RIG", "-T", "127.0.0.1", "-t",
                                 std::to_string(port_)},
        Process::Options{});
    const auto decided = [this] { return !process_->Running() || !Ask("f").empty(); };
    return WaitUntil(decided, std::chrono::seconds(5)) && process_->Running();
  }
  void Kill() {
    client_.abort();
    process_->Kill();
  }
  // Returns when a stop has reached all threads: one of them might else still answer.
  void Signal(int signal) {
    process_->Signal(signal);
    siginfo_t stopped{};
    if (signal == SIGSTOP) ::waitid(P_PID, process_->Id(), &stopped, WSTOPPED);
  }

  // The first line of the answer to a plain command.
  std::string Ask(const std::string& command) {
    if (client_.state() != QAbstractSocket::ConnectedState) {
      client_.connectToHost("127.0.0.1", port_);
      if (!client_.waitForConnected(500)) return {};
    }
    client_.readAll();
    client_.write((command + "\n").c_str());
    while (!client_.canReadLine()) {
      if (!client_.waitForReadyRead(500)) return {};
    }
    return client_.readLine().trimmed().toStdString();
  }
  // Whether that is its answer in time.
  bool Has(const std::string& command, const std::string& answer,
           std::chrono::milliseconds limit = std::chrono::seconds(5)) {
    return WaitUntil([&] { return Ask(command) == answer; }, limit);
  }

 private:
  uint16_t port_ = FreePort();
  std::unique_ptr<Process> process_;
  QTcpSocket client_;
};

}  // namespace velt

// A CAT server that answers one client at once and notes when each command to set something
// arrived.
#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "adapters/rigctld/fake_rig.h"

namespace velt {

class CatListener {
 public:
  struct Arrival {
    std::string command;  // "+F 7074000"
    std::chrono::steady_clock::time_point time;
  };

  CatListener() {
    socket_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    if (::bind(socket_, plain, size) != 0 || ::listen(socket_, 1) != 0 ||
        ::getsockname(socket_, plain, &size) != 0) {
      std::perror("listener");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
  }
  ~CatListener() {
    ::shutdown(socket_, SHUT_RDWR);
    thread_.join();
    ::close(socket_);
  }
  CatListener(const CatListener&) = delete;
  CatListener& operator=(const CatListener&) = delete;

  std::string Address() const { return "127.0.0.1:" + std::to_string(port_); }

  std::vector<Arrival> Arrivals() {
    const std::lock_guard lock(mutex_);
    return arrivals_;
  }

 private:
  void Serve() {
    const int client = ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
    FakeRig rig;
    std::string text;
    std::array<char, 4096> bytes;
    for (ssize_t n; (n = ::recv(client, bytes.data(), bytes.size(), 0)) > 0;) {
      const auto now = std::chrono::steady_clock::now();
      text.append(bytes.data(), static_cast<size_t>(n));
      for (size_t end; (end = text.find('\n')) != std::string::npos; text.erase(0, end + 1)) {
        const std::string line = text.substr(0, end);
        if (line.starts_with("+F ") || line.starts_with("+T ")) {
          const std::lock_guard lock(mutex_);
          arrivals_.push_back({line, now});
        }
        const std::string answer = rig.Answer(line);
        ::send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
      }
    }
    ::close(client);
  }

  int socket_ = -1;
  uint16_t port_ = 0;
  std::mutex mutex_;
  std::vector<Arrival> arrivals_;
  std::thread thread_;
};

}  // namespace velt

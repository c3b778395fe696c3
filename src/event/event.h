// How a lower part of the program tells upper ones that something happened: any number of
// listeners, each for as long as it keeps its connection.
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace velt {

// Owned by the listener's side: destroying it ends the listening, also from within a call.
class Connection {
 public:
  Connection() = default;
  explicit Connection(std::shared_ptr<void> listener) : listener_(std::move(listener)) {}
  void Disconnect() { listener_.reset(); }

 private:
  std::shared_ptr<void> listener_;
};

// The connections of one listener.
class Connections {
 public:
  Connections& operator+=(Connection connection) {
    connections_.push_back(std::move(connection));
    return *this;
  }
  void Disconnect() { connections_.clear(); }

 private:
  std::vector<Connection> connections_;
};

template <class... Args>
class Event {
 public:
  using Listener = std::function<void(Args...)>;

  Event() = default;
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  [[nodiscard]] Connection Listen(Listener listener) {
    std::erase_if(listeners_, [](const auto& known) { return known.expired(); });
    auto owned = std::make_shared<Listener>(std::move(listener));
    listeners_.push_back(owned);
    return Connection(std::move(owned));
  }

  bool HasListeners() const {
    for (const auto& known : listeners_) {
      if (!known.expired()) return true;
    }
    return false;
  }

  // In the order in which they began to listen. A listener may begin or end listening, its own or
  // others', and destroy the event; who begins meanwhile is not called yet.
  void Raise(Args... args) const {
    const std::vector<std::weak_ptr<Listener>> now = listeners_;
    for (const auto& known : now) {
      if (const auto listener = known.lock()) (*listener)(args...);
    }
  }

 private:
  std::vector<std::weak_ptr<Listener>> listeners_;
};

}  // namespace velt

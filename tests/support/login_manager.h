// The system's message bus and on it the login manager, for one test alone.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <memory>
#include <string>
#include <vector>

#include "guardian/descriptor.h"
#include "support/process.h"

namespace velt {

// A bus that everybody may use for everything; one at a time, and always at the same place, as the
// library of its clients reads only once where the system's bus is.
class MessageBus {
 public:
  MessageBus();  // throws std::runtime_error when it is not up after 5 s
  ~MessageBus();

  static std::string Address();
  void Kill() { process_->Kill(); }
  void Freeze() { process_->Signal(ProcessSignal::Stop); }

 private:
  std::unique_ptr<Process> process_;
};

// Hands out delay locks against sleep. Answers from the test's loop.
class LoginManager : public QDBusVirtualObject {
 public:
  LoginManager();
  ~LoginManager() override;

  // What a client needs to find it ("NAME=value").
  std::vector<std::string> Environment() const {
    return {"DBUS_SYSTEM_BUS_ADDRESS=" + MessageBus::Address()};
  }
  // Whether a lock that was handed out is still kept.
  bool Locked() const;
  void GoToSleep(bool begins = true);

  MessageBus bus;
  std::vector<std::string> asked;  // the arguments of each call, joined by '|'

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  QDBusConnection connection_;
  std::vector<Descriptor> locks_;  // our ends
};

}  // namespace velt

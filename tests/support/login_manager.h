// The login manager on a system's message bus of its own, for one test alone.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <string>
#include <vector>

#include "guardian/descriptor.h"
#include "support/process.h"

namespace velt {

// Hands out the delay lock against sleep that is asked for while a transmitter is keyed. Answers
// from the test's loop. One at a time, and always at the same place, as the library of its clients
// reads only once where the system's bus is.
class LoginManager : public QDBusVirtualObject {
 public:
  LoginManager();  // throws std::runtime_error when the bus is not up after 5 s
  ~LoginManager() override;

  // What a client needs to find it ("NAME=value").
  static std::vector<std::string> Environment() { return {"DBUS_SYSTEM_BUS_ADDRESS=" + Address()}; }
  static std::string Address();
  // Whether the lock that was handed out last is still kept.
  bool Locked() const;
  void GoToSleep();

  Process bus;

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  QDBusConnection connection_{""};
  Descriptor lock_;  // our end
};

}  // namespace velt

// Talks to the login manager over the system's message bus, in a thread where connecting to a bus
// may take its time.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QString>

namespace velt {

class LogindCaller : public QObject {
  Q_OBJECT

 public:
  LogindCaller() = default;
  ~LogindCaller() override;

  void Hold();
  void LetGo();

 Q_SIGNALS:
  void goingToSleep();
  void failed(const QString& why);

 private Q_SLOTS:
  void PrepareForSleep(bool begins);

 private:
  bool Connected();
  void Answered(QDBusPendingCallWatcher& answer);

  QDBusConnection bus_{QString()};
  QDBusUnixFileDescriptor lock_;  // the lock is let go when it is closed
  bool wanted_ = false;
  bool asking_ = false;
};

}  // namespace velt

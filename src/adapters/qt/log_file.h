// A log file that is rotated: when it exceeds its limit it becomes FILE.1 (an older FILE.1 becomes
// FILE.2, the oldest goes) and a new one is begun.
#pragma once

#include <QFile>
#include <QString>

namespace velt {

class LogFile {
 public:
  // Opens for appending. IsOpen tells whether that worked.
  explicit LogFile(const QString& path, qint64 limitBytes = qint64{1024} * 1024);
  bool IsOpen() const { return file_.isOpen(); }
  void WriteLine(const QString& line);

 private:
  void Rotate();

  static constexpr int kKept = 3;
  QString path_;
  qint64 limitBytes_;
  QFile file_;
};

}  // namespace velt

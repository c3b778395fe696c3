#include "adapters/qt/log_file.h"

namespace velt {

LogFile::LogFile(const QString& path, qint64 limitBytes)
    : path_(path), limitBytes_(limitBytes), file_(path) {
  file_.open(QIODevice::WriteOnly | QIODevice::Append);
}

void LogFile::WriteLine(const QString& line) {
  if (!file_.isOpen()) return;
  if (file_.size() > limitBytes_) Rotate();
  file_.write(line.toUtf8() + '\n');
  file_.flush();
}

void LogFile::Rotate() {
  file_.close();
  const auto numbered = [this](int n) { return path_ + "." + QString::number(n); };
  QFile::remove(numbered(kKept));
  for (int n = kKept - 1; n >= 1; --n) QFile::rename(numbered(n), numbered(n + 1));
  QFile::rename(path_, numbered(1));
  file_.open(QIODevice::WriteOnly | QIODevice::Append);
}

}  // namespace velt

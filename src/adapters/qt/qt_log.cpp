#include "adapters/qt/qt_log.h"

#include <QDateTime>
#include <QLoggingCategory>
#include <QMutex>
#include <QMutexLocker>
#include <utility>

namespace velt {
namespace {

// Qt's message handler is a plain function, so what it writes to has to live beside it.
struct Sink {
  QMutex mutex;
  std::function<void(const std::string&)> warn;
  std::function<void(std::string_view)> writeLine;
};

Sink& TheSink() {
  static Sink sink;
  return sink;
}

void HandleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  const QString category = QString::fromUtf8(context.category);
  Sink& sink = TheSink();
  const QMutexLocker locker(&sink.mutex);
  if (type != QtDebugMsg && type != QtInfoMsg) {
    sink.warn((category + ": " + text).toStdString());
  }
  if (sink.writeLine) {
    const QString time = QDateTime::currentDateTime().toString(Qt::ISODateWithMs);
    sink.writeLine((time + " " + category + " " + text).toStdString());
  }
}

}  // namespace

void QtLog::Install(std::function<void(const std::string&)> warn,
                    std::function<void(std::string_view)> writeLine) {
  TheSink().warn = std::move(warn);
  TheSink().writeLine = std::move(writeLine);
  qInstallMessageHandler(HandleMessage);
}

void QtLog::Write(LogLevel level, const char* category, std::string_view text) {
  const QMessageLogger logger(nullptr, 0, nullptr, category);
  const QString line = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  switch (level) {
    case LogLevel::Debug:
      logger.debug().noquote() << line;
      break;
    case LogLevel::Info:
      logger.info().noquote() << line;
      break;
    case LogLevel::Warning:
      logger.warning().noquote() << line;
      break;
    case LogLevel::Error:
      logger.critical().noquote() << line;
      break;
  }
}

}  // namespace velt

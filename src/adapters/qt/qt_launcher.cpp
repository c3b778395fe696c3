#include "adapters/qt/qt_launcher.h"

#include <unistd.h>

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QMimeDatabase>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <utility>

#include "text/paths.h"

namespace velt {
namespace {

constexpr int kAnswerLimitMs = 2000;  // of the tool that tells the desktop's choice

// The path's bytes are what counts; Qt decodes them as the file system's.
QString ToQtPath(const std::filesystem::path& path) {
  return QFile::decodeName(PathText(path).c_str());
}

QStringList ToQtWords(const std::vector<std::string>& command) {
  QStringList words;
  for (const std::string& word : command) words << QString::fromStdString(word);
  return words;
}

// Whether the program of that desktop entry runs what it opens.
bool Runs(const QString& entry) {
  if (entry.isEmpty()) return false;
  const QString place =
      QStandardPaths::locate(QStandardPaths::ApplicationsLocation, QString(entry).trimmed());
  QFile file(place);
  if (place.isEmpty() || !file.open(QIODevice::ReadOnly)) return false;
  const QByteArray text = file.readAll();
  return !text.contains("Archiving") && !text.contains("Compression");
}

Launcher::Start StartDetached(const QString& program, const QStringList& arguments,
                              const QString& folder) {
  QProcess process;
  process.setProgram(program);
  process.setArguments(arguments);
  process.setWorkingDirectory(folder);
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardOutputFile(QProcess::nullDevice());
  process.setStandardErrorFile(QProcess::nullDevice());
  return process.startDetached() ? Launcher::Start::Started : Launcher::Start::Failed;
}

}  // namespace

void QtLauncher::OpenDocument(const std::string& target) {
  QDesktopServices::openUrl(QUrl::fromUserInput(QString::fromStdString(target)));
}

int QtLauncher::StartProgram(const std::filesystem::path& program) {
  // Qt does not tell why a program could not be started.
  if (access(program.c_str(), X_OK) != 0) return errno;
  if (std::filesystem::is_directory(program)) return EACCES;
  const QString folder = ToQtPath(program.parent_path());
  return StartDetached(ToQtPath(program), {}, folder) == Start::Started ? 0 : ENOEXEC;
}

int QtLauncher::StartCommand(const std::vector<std::string>& command) {
  QStringList words = ToQtWords(command);
  const QString program =
      words.isEmpty() ? QString() : QStandardPaths::findExecutable(words.takeFirst());
  if (program.isEmpty()) return ENOENT;
  return StartDetached(program, words, QDir::homePath()) == Start::Started ? 0 : ENOEXEC;
}

void QtLauncher::StartDocument(const std::filesystem::path& document,
                               const std::vector<std::string>& command,
                               std::function<void(Start)> told) {
  const QString path = ToQtPath(document);
  const QString folder = ToQtPath(document.parent_path());
  const auto start = [path, folder, command, told = std::move(told)](bool desktops) {
    if (desktops) return told(StartDetached("xdg-open", {path}, folder));
    QStringList words = command.empty() ? QStringList("xdg-open") : ToQtWords(command);
    const QString program = QStandardPaths::findExecutable(words.takeFirst());
    if (program.isEmpty()) return told(Start::NoProgram);
    told(StartDetached(program, words << path, folder));
  };
  if (QStandardPaths::findExecutable("xdg-open").isEmpty()) {
    QTimer::singleShot(0, this, [start] { start(false); });
    return;
  }
  auto* question = new QProcess(this);
  auto* limit = new QTimer(question);
  const auto answered = [question, start](bool known) {
    question->disconnect();
    question->deleteLater();
    start(known && Runs(QString::fromUtf8(question->readAllStandardOutput()).trimmed()));
  };
  connect(question, &QProcess::finished, this, [answered] { answered(true); });
  connect(question, &QProcess::errorOccurred, this, [answered] { answered(false); });
  connect(limit, &QTimer::timeout, this, [question] { question->kill(); });
  limit->start(kAnswerLimitMs);
  question->setStandardErrorFile(QProcess::nullDevice());
  question->start("xdg-mime",
                  {"query", "default",
                   QMimeDatabase().mimeTypeForFile(path, QMimeDatabase::MatchExtension).name()});
}

}  // namespace velt

// Makes a PDF of a Markdown text: make-manual TEXT.md OUT.pdf TITLE
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPdfWriter>
#include <QSaveFile>
#include <cstdio>

#include "manual_document.h"

namespace {

int Fail(const QString& what) {
  std::fprintf(stderr, "make-manual: %s\n", qPrintable(what));
  return 1;
}

// What Qt remarks about the surroundings of a build is no fault of it.
void DropRemarks(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type == QtFatalMsg) std::fprintf(stderr, "make-manual: %s\n", qPrintable(text));
}

}  // namespace

int main(int argc, char** argv) {
  qInstallMessageHandler(DropRemarks);
  // Nothing is shown, and nothing of a desktop is to be seen in the result.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qunsetenv("QT_SCALE_FACTOR");
  const QGuiApplication application(argc, argv);
  const QStringList arguments = QGuiApplication::arguments();
  if (arguments.size() != 4) return Fail("give the text, the PDF file and a title");

  QFile text(arguments[1]);
  if (!text.open(QIODevice::ReadOnly)) return Fail(arguments[1] + ": " + text.errorString());
  if (QFontDatabase::families().isEmpty()) {
    std::fprintf(stderr, "make-manual: no font is installed; the manual will have no letters\n");
  }
  QSaveFile output(arguments[2]);
  if (!output.open(QIODevice::WriteOnly)) return Fail(arguments[2] + ": " + output.errorString());
  {
    QPdfWriter writer(&output);
    writer.setTitle(QFileInfo(arguments[2]).completeBaseName());
    writer.setCreator(arguments[3]);
    ManualDocument manual(QString::fromUtf8(text.readAll()), QFileInfo(text).absolutePath(),
                          arguments[3], writer);
    if (!manual.MissingPictures().isEmpty()) {
      return Fail("no such picture: " + manual.MissingPictures().join(", "));
    }
    manual.Print();
  }
  return output.commit() ? 0 : Fail(arguments[2] + ": " + output.errorString());
}

#include "adapters/qt/qt_file_chooser.h"

#include <QApplication>
#include <QFileDialog>
#include <QTimer>
#include <utility>

#include "text/paths.h"

namespace velt {
namespace {

QString PathToQt(const std::filesystem::path& path) {
  return QString::fromStdString(PathText(path));
}

}  // namespace

QtFileChooser::~QtFileChooser() {
  Drop();
}

bool QtFileChooser::Ask(const FileQuestion& question,
                        std::function<void(std::optional<std::filesystem::path>)> answered) {
  if (open_) {
    open_->raise();
    open_->activateWindow();
    return false;
  }
  // Over the dialog that asks, if there is one.
  QWidget* active = QApplication::activeWindow();
  const bool isDialog = active != nullptr && owner_ && active->parentWidget() == owner_;
  auto* dialog = new QFileDialog(isDialog ? active : owner_.data());
  open_ = dialog;
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  // The transmitter has to be within reach at any time.
  dialog->setModal(false);
  dialog->setWindowTitle(QString::fromStdString(question.title));
  dialog->setDirectory(PathToQt(question.folder));
  QStringList patterns;
  for (const std::string& pattern : question.patterns) {
    patterns << QString::fromStdString(pattern);
  }
  dialog->setNameFilters({QString::fromStdString(question.kind) + " (" + patterns.join(' ') + ")",
                          "All files (*)"});
  if (question.name.empty()) {
    dialog->setFileMode(QFileDialog::ExistingFile);
  } else {
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QString::fromStdString(question.ending));
    dialog->selectFile(PathToQt(question.name));
  }
  QObject::connect(dialog, &QDialog::finished, this, [this, dialog, answered](int result) {
    // Dropped, or told already.
    if (open_ != dialog) return;
    open_.clear();
    std::optional<std::filesystem::path> file;
    const QStringList chosen = dialog->selectedFiles();
    if (result == QDialog::Accepted && !chosen.isEmpty()) {
      file = TextPath(chosen.first().toStdString());
    }
    // The dialog goes first.
    QTimer::singleShot(0, this, [answered, file] { answered(file); });
  });
  dialog->show();
  return true;
}

void QtFileChooser::Drop() {
  QFileDialog* const dialog = std::exchange(open_, nullptr);
  if (dialog != nullptr) dialog->close();
}

}  // namespace velt

#include "adapters/qt/qt_file_chooser.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QStyle>
#include <QTimer>
#include <chrono>
#include <utility>

#include "adapters/qt/place_beside.h"
#include "text/paths.h"

namespace velt {
namespace {

constexpr std::chrono::milliseconds kFocusLimit{100};

QString PathToQt(const std::filesystem::path& path) {
  return QString::fromStdString(PathText(path));
}

}  // namespace

NameIconProvider::NameIconProvider()
    : file_(QApplication::style()->standardIcon(QStyle::SP_FileIcon)),
      folder_(QApplication::style()->standardIcon(QStyle::SP_DirIcon)) {}

QIcon NameIconProvider::icon(IconType type) const {
  return type == File ? file_ : folder_;
}

QIcon NameIconProvider::icon(const QFileInfo& info) const {
  return info.isDir() ? folder_ : file_;
}

QString NameIconProvider::type(const QFileInfo& info) const {
  return info.isDir() ? "Folder" : info.suffix().toUpper();
}

QtFileChooser::~QtFileChooser() {
  Drop(due_);
}

uint32_t QtFileChooser::Ask(const FileQuestion& question,
                            std::function<void(std::optional<std::filesystem::path>)> answered) {
  if (due_ != 0) {
    if (open_) {
      open_->raise();
      open_->activateWindow();
    }
    return 0;
  }
  due_ = ++last_;
  // Over the dialog that asks, if there is one.
  QWidget* active = QApplication::activeWindow();
  const bool isDialog = active != nullptr && owner_ && active->parentWidget() == owner_;
  auto* dialog = new QFileDialog(isDialog ? active : owner_.data());
  open_ = dialog;
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  // The transmitter has to be within reach at any time.
  dialog->setModal(false);
  if (!icons_) icons_ = std::make_unique<NameIconProvider>();
  dialog->setIconProvider(icons_.get());
  dialog->setOption(QFileDialog::HideNameFilterDetails);
  dialog->setWindowTitle(QString::fromStdString(question.title));
  dialog->setDirectory(PathToQt(question.folder));
  QStringList patterns;
  for (const std::string& pattern : question.patterns) {
    patterns << QString::fromStdString(pattern);
  }
  dialog->setNameFilters(
      {QString::fromStdString(question.kind) + " (" + patterns.join(' ') + ")", "All files (*)"});
  // For each of its own questions (to write over a file, to delete one, a name that is not there)
  // the dialog would block the whole program.
  dialog->setOption(QFileDialog::DontConfirmOverwrite);
  dialog->setOption(QFileDialog::ReadOnly);
  dialog->setFileMode(QFileDialog::AnyFile);
  if (!question.name.empty()) {
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QString::fromStdString(question.ending));
    dialog->selectFile(PathToQt(question.name));
  }
  const uint32_t number = due_;
  QObject::connect(dialog, &QDialog::finished, this, [this, dialog, answered, number](int result) {
    // Dropped, or told already.
    if (open_ != dialog) return;
    open_.clear();
    std::optional<std::filesystem::path> file;
    const QStringList chosen = dialog->selectedFiles();
    if (result == QDialog::Accepted && !chosen.isEmpty()) {
      file = TextPath(chosen.first().toStdString());
    }
    // The dialog goes first, and what it stood over gets the keyboard: what the
    // answer leads to belongs there. Not every desktop gives it.
    QWidget* const asking = dialog->parentWidget();
    if (asking != nullptr) asking->activateWindow();
    QTimer::singleShot(kFocusLimit, this, [this, answered, file, number] {
      if (due_ != number) return;
      due_ = 0;
      answered(file);
    });
  });
  PlaceBeside(*dialog, owner_);
  dialog->show();
  return due_;
}

void QtFileChooser::Drop(uint32_t question) {
  if (question == 0 || question != due_) return;
  due_ = 0;
  QFileDialog* const dialog = std::exchange(open_, nullptr);
  if (dialog != nullptr) dialog->close();
}

}  // namespace velt

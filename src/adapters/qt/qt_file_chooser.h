// The desktop's file dialog, or Qt's own where it has none.
#pragma once

#include <QFileIconProvider>
#include <QIcon>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <memory>

#include "ports/file_chooser.h"

class QFileDialog;

namespace velt {

// Tells files by their names. Qt's own provider looks into each file of a folder, on the window's
// thread, and waits for those that do not answer.
class NameIconProvider : public QFileIconProvider {
 public:
  NameIconProvider();
  QIcon icon(IconType type) const override;
  QIcon icon(const QFileInfo& info) const override;
  QString type(const QFileInfo& info) const override;

 private:
  // Made ahead: Qt asks from a thread of its own, too.
  QIcon file_;
  QIcon folder_;
};

class QtFileChooser : public QObject, public FileChooser {
 public:
  ~QtFileChooser() override;

  // The window that dialogs belong to.
  void SetOwner(QWidget* owner) { owner_ = owner; }

  uint32_t Ask(const FileQuestion& question,
               std::function<void(std::optional<std::filesystem::path>)> answered) override;
  void Drop(uint32_t question) override;

 private:
  std::unique_ptr<NameIconProvider> icons_;
  QPointer<QWidget> owner_;
  QPointer<QFileDialog> open_;
  uint32_t last_ = 0;  // number of the latest question
  uint32_t due_ = 0;   // of that which is not answered yet; 0: none
};

}  // namespace velt

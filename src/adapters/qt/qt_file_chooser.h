// The desktop's file dialog, or Qt's own where it has none.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include "ports/file_chooser.h"

class QFileDialog;

namespace velt {

class QtFileChooser : public QObject, public FileChooser {
 public:
  ~QtFileChooser() override;

  // The window that dialogs belong to.
  void SetOwner(QWidget* owner) { owner_ = owner; }

  bool Ask(const FileQuestion& question,
           std::function<void(std::optional<std::filesystem::path>)> answered) override;
  void Drop() override;

 private:
  QPointer<QWidget> owner_;
  QPointer<QFileDialog> open_;
};

}  // namespace velt

// The window of the WAV player.
#pragma once

#include <QListWidget>

#include "form/player_form.h"
#include "ui/form_dialog.h"

class QHBoxLayout;
class QVBoxLayout;

namespace velt {

// A list in which nothing is chosen before somebody does.
class ChoosingList : public QListWidget {
 public:
  explicit ChoosingList(QWidget* parent);

 protected:
  void focusInEvent(QFocusEvent* event) override;
};

class PlayerWindow : public FormDialog {
 public:
  // `form` has to outlive the window. The window is hidden until the form says otherwise.
  PlayerWindow(PlayerForm& form, QWidget* parent);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  ChoosingList* AddList(QVBoxLayout& column, ListBox& control, const QString& caption,
                        const Words& words);
  QVBoxLayout* MakeFolders();
  QVBoxLayout* MakeFiles();
  void AddProgress(QVBoxLayout& rows);
  void AddButton(QHBoxLayout& row, const Button& control, const Words& words);

  PlayerForm& form_;
  ChoosingList* folders_ = nullptr;
  ChoosingList* files_ = nullptr;
  QPoint place_;  // where it was closed
  Connection wanted_;
};

}  // namespace velt

// The window of the WAV player.
#pragma once

#include <QListWidget>

#include "form/player_form.h"
#include "ui/form_dialog.h"

class QBoxLayout;
class QHBoxLayout;
class QVBoxLayout;

namespace velt {

// A list in which nothing is chosen before somebody does.
class ChoosingList : public QListWidget {
 public:
  // So wide that this many characters are seen.
  ChoosingList(int characters, QWidget* parent);
  // Low, so that the window has room below the main window; the user can draw it larger.
  QSize sizeHint() const override { return SizeFor(kUsualLines); }
  QSize minimumSizeHint() const override { return SizeFor(kLeastLines); }

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  static constexpr int kUsualLines = 7;
  static constexpr int kLeastLines = 4;
  QSize SizeFor(int lines) const;

  const int characters_;
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
  QHBoxLayout* MakePlace();
  QHBoxLayout* MakeLists();
  ChoosingList* AddList(QHBoxLayout& row, ListBox& control, int characters, const QString& caption,
                        const Words& words);
  void AddProgress(QVBoxLayout& rows);
  QHBoxLayout* MakeBottomRow();
  void AddButton(QBoxLayout& row, const Button& control, const Words& words);

  PlayerForm& form_;
  ChoosingList* folders_ = nullptr;
  ChoosingList* files_ = nullptr;
  QPoint place_;  // where it was closed
  Connection wanted_;
};

}  // namespace velt

// The main window: shows `Main` and hands the user's input to it.
#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>

#include "form/main_form.h"
#include "spectrum/raster.h"
#include "ui/form_binder.h"

namespace velt {

class MainWindow : public QWidget {
 public:
  // `picture` gives what the analysis drew last.
  MainWindow(Main& form, std::function<const Raster&()> picture);

  // The window is being closed; `cancel` is set when it has to stay for now.
  Event<bool&> closing;

  void FocusScope();

  // Brings every widget in step with the form now, for a picture of the window.
  void SyncNow() { binder_.Sync(); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  // The key that the menu shows beside the item.
  void BindTopRow();
  void BindCatButton();
  void BindDisplay(std::function<const Raster&()> picture);
  void BindMessages();
  void AlertWith(const Label& label, ClickLabel* widget);
  ClickLabel* MakeLabel(int pixelSize, bool bold);
  ClickLabel* MakePassiveLabel(int pixelSize, bool bold, Qt::Alignment alignment);
  void LightTransmit(ClickLabel& state, PressButton& transmit, PressButton& receive);
  void ShowWindowState();
  static QPoint OnScreen(const QRect& wanted);
  void MoveToSavedPlace(QPoint saved, const QSize& size);
  void ShowFaceColour();
  void TakeSize();

  Main& form_;
  FormBinder binder_;
  ScopeWidget* scope_ = nullptr;
  QTimer settling_;  // the window has asked for a size
  uint32_t shownFace_ = 0;
};

}  // namespace velt

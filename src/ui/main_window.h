// The main window: shows `Main` and hands the user's input to it.
#pragma once

#include <QWidget>
#include <functional>

#include "form/main_form.h"
#include "spectrum/raster.h"
#include "ui/form_mirror.h"

class QAbstractButton;
class QRadioButton;
class QSlider;
class QToolButton;

namespace velt {

class ClickLabel;
class MeterWidget;
class ScaleStrip;
class ScopeWidget;
class SymbolButton;

class MainWindow : public QWidget {
 public:
  MainWindow(Main& form, std::function<const Raster&()> picture);

  // The window is being closed; `cancel` is set when it has to stay for now.
  Event<bool&> closing;

  void FocusScope();

  // Brings every widget in step with the form now, for a picture of the window.
  void SyncNow() { mirror_.Sync(); }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void BindTopRow();
  void BindDisplay();
  void BindMessages();
  void BindWindow();
  // For a Button or an Image: both are clicked and have no picture here.
  template <class C>
  void BindMenuButton(C& control, QToolButton* widget);
  void BindLabel(Label& label, ClickLabel* widget);
  void BindRigLabel(RigLabel& label, ClickLabel* widget);
  void BindTransmitButton(int32_t index, const char* toolTip);
  void BindSlider(SliderControl& slider, QSlider* widget);
  QToolButton* MakeMenuButton(const char* text, const char* toolTip, const char* accessibleName);
  ClickLabel* MakeLabel(int pixelSize, bool bold, const char* toolTip, const char* accessibleName);
  void ShowWindowState();
  void ShowFaceColour();

  Main& form_;
  std::function<const Raster&()> picture_;
  FormMirror mirror_;
  ScopeWidget* scope_ = nullptr;
  uint32_t shownFace_ = 0;
  QPalette desktopPalette_;
};

}  // namespace velt

// Binds a form's controls to the widgets of a window, each kind in one way: what the form says is
// shown, what the user does is handed to the form. Shows changes before the loop goes to wait, so
// that widget code never runs in the middle of the program's logic, and sets only what differs.
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <unordered_map>
#include <vector>

#include "form/main_form.h"

class QAbstractButton;
class QAction;
class QButtonGroup;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QSlider;
class QToolButton;
class QWidget;

namespace velt {

class ClickLabel;
class LampWidget;
class LiveWidget;
class MeterWidget;
class PaletteStrip;
class PressButton;
class ScopeWidget;
class SwatchButton;
class SymbolButton;
class TextBinding;

// What is said about a widget.
struct Words {
  QString name = {};      // for screen readers; %1 stands for the text that is shown
  QString toolTip = {};   // until the control has one of its own; %1 as in the name of a label
  QChar accessKey = {};   // a letter of the caption that acts with Alt
  QString unknown = {};   // shown while a label's caption is empty
  QString toEnable = {};  // the tool tip while it is disabled: what would enable it
  QString (*spelled)(const QString& caption) = nullptr;  // how a label shows its caption
};

// When a text that is typed reaches the form.
enum class Typing {
  EachCharacter,
  // After a pause of a second, or when the field is left: while "15" is typed, "1" does not act.
  WhenOver
};

class FormBinder : public QObject {
 public:
  // Where widgets stand: at their controls' places, hidden without one, or where a layout puts
  // them.
  enum class Places { OfForm, OfLayout };

  // A form has one binder. It has to outlive the binder, and so have the widgets that are bound.
  FormBinder(Form& form, Places places);
  ~FormBinder() override;

  // Each shows the control at once and whenever it changed, and returns the widget.
  ClickLabel* Bind(const Label& control, ClickLabel* widget, const Words& words);
  ClickLabel* Bind(const RigLabel& control, ClickLabel* widget, const Words& words);
  QLabel* Bind(const Label& control, QLabel* widget, const Words& words);
  QLabel* Bind(const RigLabel& control, QLabel* widget, const Words& words);
  QGroupBox* Bind(const Frame& control, QGroupBox* widget);
  LampWidget* Bind(const Lamp& control, LampWidget* widget, const Words& words);
  QAbstractButton* Bind(const Button& control, QAbstractButton* widget, const Words& words);
  // The name stands for the caption and the colour's.
  SwatchButton* Bind(const ColourButton& control, SwatchButton* widget, const Words& words);
  PaletteStrip* Bind(const PalettePicture& control, PaletteStrip* widget, const Words& words);
  // An image shows its tag as its text, or as the symbol of that name.
  QAbstractButton* Bind(const Image& control, QAbstractButton* widget, const Words& words);
  SymbolButton* Bind(const Image& control, SymbolButton* widget, const Words& words);
  QAbstractButton* Bind(CheckBox& control, QAbstractButton* widget, const Words& words);
  // One of a group of which one is chosen.
  QAbstractButton* Bind(OptionButton& control, QAbstractButton* widget, QButtonGroup& group,
                        const Words& words);
  // One that tells when it is pressed, by which button: Space is the left one, the menu key the
  // right one. It shows what the form makes of that.
  PressButton* Bind(const OptionButton& control, PressButton* widget, const Words& words);
  // An editable one shows the list's text, too.
  QComboBox* Bind(ListBox& control, QComboBox* widget, const Words& words);
  QListWidget* Bind(ListBox& control, QListWidget* widget, const Words& words);
  QLineEdit* Bind(TextBox& control, QLineEdit* widget, const Words& words,
                  Typing typing = Typing::EachCharacter);
  // Upside down: the widget's greatest value is the control's least one.
  QSlider* Bind(SliderControl& control, QSlider* widget, const Words& words);
  QAction* Bind(const MenuItem& control, QAction* action);
  MeterWidget* Bind(const MeterPicture& control, MeterWidget* widget, const Words& words);
  ScopeWidget* Bind(const ScopeControl& control, ScopeWidget* widget, const Words& words);

  // For what a window makes of a control beyond that: at once and whenever the control changed.
  void Watch(const Control& control, std::function<void()> show);

  // Brings every widget in step now.
  void Sync();

  // Takes back what is typed and has not reached the form.
  void DropTyping();

 private:
  // Shows what every control has.
  void Mirror(const Control& control, QWidget* widget, const Words& words);

  Form& form_;
  const Places places_;
  std::unordered_map<const Control*, std::vector<std::function<void()>>> shows_;
  std::vector<Control*> spare_;
  std::vector<TextBinding*> texts_;
  std::vector<LiveWidget*> live_;
  Connections connections_;
};

}  // namespace velt
